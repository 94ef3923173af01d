#pragma once

// Steam's language setting as the code under test sees it: the current user's hive is another one,
// empty at first, for as long as the object lives.

#include <cstddef>
#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

class SteamSetting {
 public:
  SteamSetting();
  ~SteamSetting();
  SteamSetting(const SteamSetting&) = delete;
  SteamSetting& operator=(const SteamSetting&) = delete;

  // Stores the text as Steam does.
  void SetLanguage(const std::wstring& language);

  // Stores any bytes.
  void SetValue(DWORD type, const void* data, std::size_t byte_count);

  // Only the key.
  void CreateKey();

 private:
  nhupdate::UniqueRegistryKey hive_;
};

}  // namespace nhupdate_test
