#include "tests/support/steam_setting.h"

#include <gtest/gtest.h>

namespace nhupdate_test {

namespace {

constexpr wchar_t kSteamKey[] = L"SOFTWARE\\Valve\\Steam";

}  // namespace

void SteamSetting::SetLanguage(const std::wstring& language) {
  SetValue(REG_SZ, BytesOf(language + L'\0'));
}

void SteamSetting::SetValue(DWORD type, const std::vector<std::uint8_t>& bytes) {
  SetRegistryValue(HKEY_CURRENT_USER, kSteamKey, L"Language", {type, bytes});
}

void SteamSetting::CreateKey() {
  nhupdate::UniqueRegistryKey key;
  EXPECT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, kSteamKey, 0, nullptr, REG_OPTION_NON_VOLATILE,
                              KEY_WRITE, nullptr, key.Receive(), nullptr),
            ERROR_SUCCESS);
}

}  // namespace nhupdate_test
