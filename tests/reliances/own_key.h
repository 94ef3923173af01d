#pragma once

// A registry key of this program's own below HKEY_CURRENT_USER\Software, for as long as the object
// lives.

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

class COwnKey {
 public:
  COwnKey();
  ~COwnKey();
  COwnKey(const COwnKey&) = delete;
  COwnKey& operator=(const COwnKey&) = delete;

  [[nodiscard]] HKEY Get() const { return key_.Get(); }

 private:
  std::wstring path_;
  nhupdate::UniqueRegistryKey key_;
};

}  // namespace nhupdate_test
