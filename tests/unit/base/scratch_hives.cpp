#include "tests/unit/base/scratch_hives.h"

#include <gtest/gtest.h>

#include <cstring>

#include "base/format.h"
#include "base/unique_handle.h"

namespace nhupdate_test {

namespace {

std::wstring ScratchKeyPath() {
  return nhupdate::Format(L"Software\\NHUpdateManagerTests\\%d", ::GetCurrentProcessId());
}

nhupdate::UniqueRegistryKey CreateKey(HKEY hive, const std::wstring& path) {
  nhupdate::UniqueRegistryKey key;
  const LSTATUS status = ::RegCreateKeyExW(hive, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                           nullptr, key.Receive(), nullptr);
  EXPECT_EQ(status, ERROR_SUCCESS) << "Can't create " << testing::PrintToString(path);
  return key;
}

}  // namespace

ScratchHives::ScratchHives() {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, ScratchKeyPath().c_str());
  const auto machine = CreateKey(HKEY_CURRENT_USER, ScratchKeyPath() + L"\\Machine");
  const auto user = CreateKey(HKEY_CURRENT_USER, ScratchKeyPath() + L"\\User");
  EXPECT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine.Get()), ERROR_SUCCESS);
  EXPECT_EQ(::RegOverridePredefKey(HKEY_CURRENT_USER, user.Get()), ERROR_SUCCESS);
}

ScratchHives::~ScratchHives() {
  ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
  ::RegDeleteTreeW(HKEY_CURRENT_USER, ScratchKeyPath().c_str());
}

void SetRegistryValue(HKEY hive, const std::wstring& key_path, const std::wstring& value_name,
                      const RegistryValue& value) {
  const auto key = CreateKey(hive, key_path);
  // In a buffer of its own, since Wine keeps a terminator that it finds behind the data.
  std::vector<std::uint8_t> bytes = value.bytes;
  bytes.insert(bytes.end(), {0xAA, 0xAA, 0xAA, 0xAA});
  const LSTATUS status = ::RegSetValueExW(key.Get(), value_name.c_str(), 0, value.type,
                                          bytes.data(), static_cast<DWORD>(value.bytes.size()));
  EXPECT_EQ(status, ERROR_SUCCESS) << "Can't write " << testing::PrintToString(value_name);
}

std::optional<RegistryValue> GetRegistryValue(HKEY hive, const std::wstring& key_path,
                                              const std::wstring& value_name) {
  nhupdate::UniqueRegistryKey key;
  if (::RegOpenKeyExW(hive, key_path.c_str(), 0, KEY_READ, key.Receive()) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  RegistryValue value;
  value.bytes.resize(65536);
  DWORD size = static_cast<DWORD>(value.bytes.size());
  if (::RegQueryValueExW(key.Get(), value_name.c_str(), nullptr, &value.type, value.bytes.data(),
                         &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  value.bytes.resize(size);
  return value;
}

std::vector<std::uint8_t> BytesOf(const std::wstring& text) {
  std::vector<std::uint8_t> bytes(text.size() * sizeof(wchar_t));
  if (!bytes.empty()) {
    std::memcpy(bytes.data(), text.data(), bytes.size());
  }
  return bytes;
}

}  // namespace nhupdate_test
