#pragma once

// Stand-ins for HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER: two keys of a test's own, for as long as
// the object lives. What is written through the program ends up in them.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/windows.h"

namespace nhupdate_test {

class ScratchHives {
 public:
  ScratchHives();
  ~ScratchHives();
  ScratchHives(const ScratchHives&) = delete;
  ScratchHives& operator=(const ScratchHives&) = delete;
};

struct RegistryValue {
  DWORD type = REG_NONE;
  std::vector<std::uint8_t> bytes;
};

// Writes a value below the key, creating that where needed.
void SetRegistryValue(HKEY hive, const std::wstring& key_path, const std::wstring& value_name,
                      const RegistryValue& value);

// The value as it is stored; nothing when there is none.
[[nodiscard]] std::optional<RegistryValue> GetRegistryValue(HKEY hive, const std::wstring& key_path,
                                                            const std::wstring& value_name);

// The text's units as bytes, without a terminator.
[[nodiscard]] std::vector<std::uint8_t> BytesOf(const std::wstring& text);

}  // namespace nhupdate_test
