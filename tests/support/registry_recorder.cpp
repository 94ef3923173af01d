#include "tests/support/registry_recorder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <ostream>
#include <utility>

#include "tests/support/scratch_registry.h"

namespace nhupdate_test {

namespace {

// Windows also stores a terminator that happens to follow the bytes it was given.
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
  return {key, name, REG_SZ, BytesOf(text)};
}

WrittenValue StoredValue(const std::wstring& key, const std::wstring& name) {
  const std::optional<RegistryValue> stored = GetRegistryValue(HKEY_LOCAL_MACHINE, key, name);
  if (!stored) {
    return {key, name, REG_NONE, {}};
  }
  WrittenValue value{key, name, stored->type, stored->bytes};
  RemoveTerminator(value);
  return value;
}

RegistryRecorder::RegistryRecorder(std::function<void(int)> before_value)
    : before_value_(std::move(before_value)),
      create_key_([this](HKEY hive, const wchar_t* path, DWORD reserved, wchar_t* key_class,
                         DWORD options, REGSAM access, auto* security, HKEY* key, auto rest) {
        EXPECT_EQ(hive, HKEY_LOCAL_MACHINE);
        EXPECT_EQ(reserved, 0u);
        EXPECT_EQ(key_class, nullptr);
        EXPECT_EQ(options, 0u);
        EXPECT_EQ(access, static_cast<REGSAM>(0x20006));
        EXPECT_EQ(security, nullptr);
        const LSTATUS status = create_key_.Original()(hive, path, reserved, key_class, options,
                                                      access, security, key, rest);
        if (status == ERROR_SUCCESS) {
          open_keys_[*key] = path;
          ++opened_keys_;
        }
        return status;
      }),
      set_value_([this](HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data,
                        DWORD byte_count) -> std::optional<LSTATUS> {
        EXPECT_EQ(reserved, 0u);
        ++values_;
        if (before_value_) {
          before_value_(values_);
        }
        if (values_ == failing_value_) {
          return ERROR_ACCESS_DENIED;
        }
        written_.push_back({open_keys_.at(key), name, type, {data, data + byte_count}});
        return std::nullopt;
      }),
      close_key_([this](HKEY key) { open_keys_.erase(key); }) {}

}  // namespace nhupdate_test
