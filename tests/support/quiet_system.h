#pragma once

// A Windows without Steam (no registry key can be opened) whose only language is "en-US", so that
// the manager's start-up is the same on every machine.

#include "base/windows.h"
#include "tests/support/interposer.h"
#include "tests/support/preferred_languages.h"

namespace nhupdate_test {

class QuietSystem {
 private:
  INTERPOSER(RegOpenKeyExW) open_key_{
      [](HKEY, const wchar_t*, DWORD, REGSAM, HKEY*) -> LSTATUS { return ERROR_FILE_NOT_FOUND; }};
  PreferredLanguages languages_{{L"en-US"}};
};

}  // namespace nhupdate_test
