#pragma once

// A Windows without Steam whose first language is "en-US", so that the manager's start-up is the
// same on every machine.

#include <cwchar>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

class QuietSystem {
 private:
  INTERPOSER(RegOpenKeyExW) open_key_{
      [](HKEY, const wchar_t*, DWORD, REGSAM, HKEY*) -> LSTATUS { return ERROR_FILE_NOT_FOUND; }};
  INTERPOSER(GetUserPreferredUILanguages) languages_{
      [](DWORD, ULONG* count, wchar_t* names, ULONG* units) -> BOOL {
        constexpr wchar_t kNames[] = L"en-US\0";
        *count = 1;
        if (names != nullptr) {
          std::wmemcpy(names, kNames, 7);
        }
        *units = 7;
        return TRUE;
      }};
};

}  // namespace nhupdate_test
