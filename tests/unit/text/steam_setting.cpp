#include "tests/unit/text/steam_setting.h"

#include <gtest/gtest.h>

namespace nhupdate_test {

namespace {

constexpr wchar_t kHive[] = L"Software\\NHUpdateManager tests\\Current user";
constexpr wchar_t kSteamKey[] = L"SOFTWARE\\Valve\\Steam";

}  // namespace

SteamSetting::SteamSetting() {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, kHive);  // an earlier process may have been killed
  EXPECT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, kHive, 0, nullptr, REG_OPTION_NON_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, hive_.Receive(), nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(::RegOverridePredefKey(HKEY_CURRENT_USER, hive_.Get()), ERROR_SUCCESS);
}

SteamSetting::~SteamSetting() {
  ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
  hive_.Reset();
  ::RegDeleteTreeW(HKEY_CURRENT_USER, kHive);
}

void SteamSetting::SetLanguage(const std::wstring& language) {
  SetValue(REG_SZ, language.c_str(), (language.size() + 1) * sizeof(wchar_t));
}

void SteamSetting::SetValue(DWORD type, const void* data, std::size_t byte_count) {
  EXPECT_EQ(::RegSetKeyValueW(hive_.Get(), kSteamKey, L"Language", type, data,
                              static_cast<DWORD>(byte_count)),
            ERROR_SUCCESS);
}

void SteamSetting::CreateKey() {
  nhupdate::UniqueRegistryKey key;
  EXPECT_EQ(::RegCreateKeyExW(hive_.Get(), kSteamKey, 0, nullptr, REG_OPTION_NON_VOLATILE,
                              KEY_WRITE, nullptr, key.Receive(), nullptr),
            ERROR_SUCCESS);
}

}  // namespace nhupdate_test
