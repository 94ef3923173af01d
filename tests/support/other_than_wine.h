#pragma once

// As long as the object lives, the code of this executable takes the machine for one that isn't
// Wine's, and for one that nobody has said may be thrown away.

#include <cstring>
#include <string>

#include "tests/support/interposer.h"
#include "tests/support/throwaway_machine.h"

namespace nhupdate_test {

class OtherThanWine {
 public:
  OtherThanWine() {
    constexpr DWORD kUnits = 64;
    value_.resize(kUnits);
    value_.resize(::GetEnvironmentVariableW(kThrowawayVariable, value_.data(), kUnits));
    ::SetEnvironmentVariableW(kThrowawayVariable, nullptr);
  }
  ~OtherThanWine() {
    ::SetEnvironmentVariableW(kThrowawayVariable, value_.empty() ? nullptr : value_.c_str());
  }
  OtherThanWine(const OtherThanWine&) = delete;
  OtherThanWine& operator=(const OtherThanWine&) = delete;

 private:
  std::wstring value_;
  INTERPOSER(GetProcAddress) get_{[this](HMODULE library, const char* name) -> FARPROC {
    // A small number stands for a function without a name.
    const bool is_number = reinterpret_cast<ULONG_PTR>(name) <= 0xFFFF;
    if (!is_number && std::strcmp(name, "wine_get_version") == 0) {
      ::SetLastError(ERROR_PROC_NOT_FOUND);
      return nullptr;
    }
    return get_.Original()(library, name);
  }};
};

}  // namespace nhupdate_test
