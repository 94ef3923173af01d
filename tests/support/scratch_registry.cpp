#include "tests/support/scratch_registry.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "tests/support/unused_name.h"

namespace nhupdate_test {

namespace {

// Deletes the user's key and all below it. Windows does it by itself, but asks its server half as
// much again. What isn't there is removed: a registry within another one goes with that.
bool RemoveKeys(const std::wstring& path) {
  {
    constexpr DWORD kLongestName = 256;
    std::array<wchar_t, kLongestName> name = {};
    DWORD units = kLongestName;
    nhupdate::UniqueRegistryKey key;
    if (::RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_ENUMERATE_SUB_KEYS,
                        key.Receive()) == ERROR_FILE_NOT_FOUND) {
      return true;
    }
    while (::RegEnumKeyExW(key.Get(), 0, name.data(), &units, nullptr, nullptr, nullptr, nullptr) ==
           ERROR_SUCCESS) {
      if (!RemoveKeys(path + L"\\" + name.data())) {
        return false;
      }
      units = kLongestName;
    }
  }
  return ::RegDeleteKeyW(HKEY_CURRENT_USER, path.c_str()) == ERROR_SUCCESS;
}

}  // namespace

nhupdate::UniqueRegistryKey CreateRegistryKey(HKEY hive, const std::wstring& path) {
  nhupdate::UniqueRegistryKey key;
  const LSTATUS status = ::RegCreateKeyExW(hive, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                           nullptr, key.Receive(), nullptr);
  EXPECT_EQ(status, ERROR_SUCCESS) << "Can't create " << testing::PrintToString(path);
  return key;
}

ScratchRegistry::ScratchRegistry()
    : path_(L"Software\\nhupdate test " + UnusedName()),
      machine_(CreateRegistryKey(HKEY_CURRENT_USER, path_ + L"\\Machine")),
      user_(CreateRegistryKey(HKEY_CURRENT_USER, path_ + L"\\User")) {
  EXPECT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine_.Get()), ERROR_SUCCESS);
  EXPECT_EQ(::RegOverridePredefKey(HKEY_CURRENT_USER, user_.Get()), ERROR_SUCCESS);
}

ScratchRegistry::~ScratchRegistry() {
  ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
  machine_.Reset();
  user_.Reset();
  EXPECT_TRUE(RemoveKeys(path_)) << "Something is left of a scratch registry: "
                                 << testing::PrintToString(path_);
}

bool ScratchRegistry::IsEmpty() const {
  DWORD keys = 0;
  DWORD values = 0;
  const LSTATUS status =
      ::RegQueryInfoKeyW(machine_.Get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                         &values, nullptr, nullptr, nullptr, nullptr);
  return status == ERROR_SUCCESS && keys == 0 && values == 0;
}

std::wstring ScratchRegistry::Text(const std::wstring& key, const std::wstring& name) const {
  std::array<wchar_t, 1024> text = {};
  DWORD bytes = sizeof(text) - sizeof(wchar_t);
  const LSTATUS status = ::RegGetValueW(machine_.Get(), key.c_str(), name.c_str(), RRF_RT_REG_SZ,
                                        nullptr, text.data(), &bytes);
  return status == ERROR_SUCCESS ? text.data() : L"(none)";
}

void SetRegistryValue(HKEY hive, const std::wstring& key_path, const std::wstring& value_name,
                      const RegistryValue& value) {
  const auto key = CreateRegistryKey(hive, key_path);
  // Windows would also store a terminator that happens to follow the data, so other bytes do.
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
