#pragma once

// Two empty keys of a test's own stand for HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER in this process
// for as long as the object lives. They are gone afterwards.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

class ScratchRegistry {
 public:
  ScratchRegistry();
  ~ScratchRegistry();

  // True as long as nothing was written for the machine.
  [[nodiscard]] bool IsEmpty() const;

  // The text of the machine's value; "(none)" when there is no such text.
  [[nodiscard]] std::wstring Text(const std::wstring& key, const std::wstring& name) const;

 private:
  std::wstring path_;
  nhupdate::UniqueRegistryKey machine_;
  nhupdate::UniqueRegistryKey user_;
};

struct RegistryValue {
  DWORD type = REG_NONE;
  std::vector<std::uint8_t> bytes;

  bool operator==(const RegistryValue&) const = default;
};

// Opens the key for everything, creating it where needed.
nhupdate::UniqueRegistryKey CreateRegistryKey(HKEY hive, const std::wstring& path);

// Writes a value below the key, creating that where needed.
void SetRegistryValue(HKEY hive, const std::wstring& key_path, const std::wstring& value_name,
                      const RegistryValue& value);

// The value as it is stored; nothing when there is none.
[[nodiscard]] std::optional<RegistryValue> GetRegistryValue(HKEY hive, const std::wstring& key_path,
                                                            const std::wstring& value_name);

// The text's units as bytes, without a terminator.
[[nodiscard]] std::vector<std::uint8_t> BytesOf(const std::wstring& text);

}  // namespace nhupdate_test
