#pragma once

// Steam's language setting as the code under test sees it: there is none at first, in a registry of
// the test's own.

#include <cstdint>
#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/support/scratch_registry.h"

namespace nhupdate_test {

class SteamSetting {
 public:
  // Stores the text as Steam does.
  void SetLanguage(const std::wstring& language) { SetValue(REG_SZ, BytesOf(language + L'\0')); }

  // Stores any bytes.
  void SetValue(DWORD type, const std::vector<std::uint8_t>& bytes) {
    SetRegistryValue(HKEY_CURRENT_USER, kKey, L"Language", {type, bytes});
  }

  // Only the key.
  void CreateKey() { CreateRegistryKey(HKEY_CURRENT_USER, kKey); }

 private:
  static constexpr wchar_t kKey[] = L"SOFTWARE\\Valve\\Steam";

  ScratchRegistry registry_;
};

}  // namespace nhupdate_test
