#include "tests/reliances/own_key.h"

#include "tests/reliances/reliance.h"

namespace nhupdate_test {

COwnKey::COwnKey()
    : path_(L"Software\\nhupdate_reliances_" + std::to_wstring(::GetCurrentProcessId())) {
  const LSTATUS status =
      ::RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_ALL_ACCESS, nullptr, key_.Receive(), nullptr);
  if (status != ERROR_SUCCESS) {
    ::SetLastError(static_cast<DWORD>(status));
    GiveUp("make the key", path_);
  }
}

COwnKey::~COwnKey() {
  key_.Reset();
  ::RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
}

}  // namespace nhupdate_test
