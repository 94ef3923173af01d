#pragma once

// What Windows tells the program about itself for as long as the object lives: where its executable
// and the ProgramData folder are, and whether it is elevated.

#include "tests/support/shell_text.h"
#include "tests/support/windows_basics.h"

#include <shlobj.h>  // needs <windows.h> first

namespace nhupdate_test {

struct SurroundingFacts {
  std::wstring executable;
  std::wstring program_data;  // empty when there is none
  bool elevated = true;
};

class ProductSurroundings {
 public:
  explicit ProductSurroundings(SurroundingFacts facts) : facts_(std::move(facts)) {}

 private:
  // As Windows does it: a path that is too long is cut off, and the buffer's size is returned.
  std::optional<DWORD> GiveExecutable(HMODULE module, wchar_t* buffer, DWORD units) const {
    if (module != nullptr) {
      return std::nullopt;
    }
    const DWORD length = static_cast<DWORD>(facts_.executable.size());
    const bool fits = length < units;
    buffer[facts_.executable.copy(buffer, units - 1)] = L'\0';
    ::SetLastError(fits ? ERROR_SUCCESS : ERROR_INSUFFICIENT_BUFFER);
    return std::min(length, units);
  }

  SurroundingFacts facts_;
  INTERPOSER(GetModuleFileNameW) module_file_name_{
      std::bind_front(&ProductSurroundings::GiveExecutable, this)};
  INTERPOSER(SHGetKnownFolderPath) known_folder_{[this](auto, auto, auto, PWSTR* path) {
    const bool is_there = !facts_.program_data.empty();
    *path = is_there ? CopyForShell(facts_.program_data) : nullptr;
    return is_there ? S_OK : E_FAIL;
  }};
  INTERPOSER(GetTokenInformation) token_information_{
      [this](HANDLE, TOKEN_INFORMATION_CLASS, void* information, auto...) {
        static_cast<TOKEN_ELEVATION*>(information)->TokenIsElevated = facts_.elevated ? 1 : 0;
        return TRUE;
      }};
};

}  // namespace nhupdate_test
