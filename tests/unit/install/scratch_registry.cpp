#include "tests/unit/install/scratch_registry.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <utility>

#include "base/unique_handle.h"

namespace nhupdate_test {

namespace {

constexpr wchar_t kScratchKey[] = L"Software\\nhupdate scratch machine";

// Wine, unlike Windows, also stores a NUL that happens to follow the counted bytes.
void RemoveTerminator(WrittenValue& value) {
  const std::size_t size = value.bytes.size();
  if (value.type == REG_SZ && size >= 2 && value.bytes[size - 1] == 0 &&
      value.bytes[size - 2] == 0) {
    value.bytes.resize(size - 2);
  }
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const WrittenValue& value) {
  stream << testing::PrintToString(value.key) << " " << testing::PrintToString(value.name)
         << " type " << value.type;
  if (value.type == REG_SZ) {
    std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), value.bytes.data(), text.size() * sizeof(wchar_t));
    stream << " " << testing::PrintToString(text);
  }
  return stream << " " << value.bytes.size() << " bytes";
}

WrittenValue Text(const std::wstring& key, const std::wstring& name, const std::wstring& text) {
  WrittenValue value{key, name, REG_SZ, std::vector<BYTE>(text.size() * sizeof(wchar_t))};
  std::memcpy(value.bytes.data(), text.data(), value.bytes.size());
  return value;
}

ScratchRegistry::ScratchRegistry() {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, kScratchKey);  // an earlier test may have been killed
  nhupdate::UniqueRegistryKey key;
  EXPECT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, kScratchKey, 0, nullptr, REG_OPTION_NON_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, key.Receive(), nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, key.Get()), ERROR_SUCCESS);
}

ScratchRegistry::~ScratchRegistry() {
  ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  ::RegDeleteTreeW(HKEY_CURRENT_USER, kScratchKey);
}

WrittenValue ScratchRegistry::Read(const std::wstring& key, const std::wstring& name) const {
  WrittenValue value{key, name, REG_NONE, std::vector<BYTE>(4096)};
  nhupdate::UniqueRegistryKey opened;
  DWORD byte_count = static_cast<DWORD>(value.bytes.size());
  if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_READ, opened.Receive()) !=
          ERROR_SUCCESS ||
      ::RegQueryValueExW(opened.Get(), name.c_str(), nullptr, &value.type, value.bytes.data(),
                         &byte_count) != ERROR_SUCCESS) {
    return {key, name, REG_NONE, {}};
  }
  value.bytes.resize(byte_count);
  RemoveTerminator(value);
  return value;
}

void ScratchRegistry::Write(const WrittenValue& value) {
  nhupdate::UniqueRegistryKey key;
  EXPECT_EQ(::RegCreateKeyExW(HKEY_LOCAL_MACHINE, value.key.c_str(), 0, nullptr,
                              REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, key.Receive(), nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(::RegSetValueExW(key.Get(), value.name.c_str(), 0, value.type, value.bytes.data(),
                             static_cast<DWORD>(value.bytes.size())),
            ERROR_SUCCESS);
}

RegistryRecorder::RegistryRecorder(std::function<void(int)> before_value)
    : before_value_(std::move(before_value)),
      create_key_([this](HKEY hive, const wchar_t* path, DWORD reserved, wchar_t* key_class,
                         DWORD options, REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* key,
                         DWORD* disposition) {
        EXPECT_EQ(hive, HKEY_LOCAL_MACHINE);
        EXPECT_EQ(reserved, 0u);
        EXPECT_EQ(key_class, nullptr);
        EXPECT_EQ(options, 0u);
        EXPECT_EQ(access, static_cast<REGSAM>(0x20006));
        EXPECT_EQ(security, nullptr);
        const LSTATUS status = create_key_.Original()(hive, path, reserved, key_class, options,
                                                      access, security, key, disposition);
        if (status == ERROR_SUCCESS) {
          open_keys_[*key] = path;
          ++opened_keys_;
        }
        return status;
      }),
      set_value_([this](HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data,
                        DWORD byte_count) -> LSTATUS {
        ++values_;
        if (before_value_) {
          before_value_(values_);
        }
        if (values_ == failing_value_) {
          return ERROR_ACCESS_DENIED;
        }
        written_.push_back(
            {open_keys_.at(key), name, type, std::vector<BYTE>(data, data + byte_count)});
        return set_value_.Original()(key, name, reserved, type, data, byte_count);
      }),
      close_key_([this](HKEY key) {
        open_keys_.erase(key);
        return close_key_.Original()(key);
      }) {}

}  // namespace nhupdate_test
