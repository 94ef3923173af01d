#pragma once

// One reader (current user) and two writers (local machine) of single registry values. Each opens
// its key, does one thing and closes the key again.

#include <cstdint>
#include <string>

namespace nhupdate {

// Reads a REG_SZ value of at most 1024 characters below HKEY_CURRENT_USER, up to its first NUL.
// Returns 1 and fills `data`, or 0 and leaves `data` alone: no such key or value, another type
// (REG_EXPAND_SZ too), or a value that is too long.
[[nodiscard]] int GetRegString(const std::wstring& key_path, const std::wstring& value_name,
                               std::wstring& data);

// Writes a REG_SZ value below HKEY_LOCAL_MACHINE, creating the key where needed. The terminating
// NUL is not counted into the stored bytes. Returns 1 when the value was written, else 0.
[[nodiscard]] int SetRegString(const std::wstring& key_path, const std::wstring& value_name,
                               const std::wstring& data);

// The same for a REG_DWORD value.
[[nodiscard]] int SetRegDword(const std::wstring& key_path, const std::wstring& value_name,
                              std::uint32_t data);

}  // namespace nhupdate
