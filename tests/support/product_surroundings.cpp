#include "tests/support/product_surroundings.h"

#include <utility>

#include "tests/support/shell_text.h"

namespace nhupdate_test {

ProductSurroundings::ProductSurroundings(SurroundingFacts facts)
    : facts_(std::move(facts)),
      module_file_name_([this](HMODULE module, wchar_t* buffer, DWORD units) -> DWORD {
        return module != nullptr ? module_file_name_.Original()(module, buffer, units)
                                 : GiveExecutable(buffer, units);
      }),
      known_folder_([this](REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) -> HRESULT {
        const bool is_there = !facts_.program_data.empty();
        *path = is_there ? CopyForShell(facts_.program_data) : nullptr;
        return is_there ? S_OK : E_FAIL;
      }),
      token_information_(
          [this](HANDLE, TOKEN_INFORMATION_CLASS, void* information, DWORD, DWORD*) -> BOOL {
            static_cast<TOKEN_ELEVATION*>(information)->TokenIsElevated = facts_.elevated ? 1 : 0;
            return TRUE;
          }) {}

DWORD ProductSurroundings::GiveExecutable(wchar_t* buffer, DWORD units) const {
  const DWORD length = static_cast<DWORD>(facts_.executable.size());
  if (length >= units) {
    facts_.executable.copy(buffer, units - 1);
    buffer[units - 1] = L'\0';
    ::SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return units;
  }
  facts_.executable.copy(buffer, length);
  buffer[length] = L'\0';
  return length;
}

}  // namespace nhupdate_test
