#include "base/registry.h"

#include <array>
#include <cstddef>
#include <cwchar>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

namespace {

int SetRegValue(const std::wstring& key_path, const std::wstring& value_name, DWORD type,
                const void* data, std::size_t byte_count) {
  UniqueRegistryKey key;
  if (::RegCreateKeyExW(HKEY_LOCAL_MACHINE, key_path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_WRITE, nullptr, key.Receive(), nullptr) != ERROR_SUCCESS) {
    return 0;
  }
  const LSTATUS status =
      ::RegSetValueExW(key.Get(), value_name.c_str(), 0, type, static_cast<const BYTE*>(data),
                       static_cast<DWORD>(byte_count));
  return status == ERROR_SUCCESS ? 1 : 0;
}

}  // namespace

int GetRegString(const std::wstring& key_path, const std::wstring& value_name, std::wstring& data) {
  UniqueRegistryKey key;
  if (::RegOpenKeyExW(HKEY_CURRENT_USER, key_path.c_str(), 0, KEY_READ, key.Receive()) !=
      ERROR_SUCCESS) {
    return 0;
  }
  // Values are often stored without a terminator, so the buffer starts as all terminators.
  std::array<wchar_t, 1024> buffer = {};
  DWORD type = REG_NONE;
  DWORD byte_count = sizeof(buffer);
  const LSTATUS status = ::RegQueryValueExW(key.Get(), value_name.c_str(), nullptr, &type,
                                            reinterpret_cast<BYTE*>(buffer.data()), &byte_count);
  if (status != ERROR_SUCCESS || type != REG_SZ) {
    return 0;
  }
  data.assign(buffer.data(), wcsnlen(buffer.data(), buffer.size()));
  return 1;
}

int SetRegString(const std::wstring& key_path, const std::wstring& value_name,
                 const std::wstring& data) {
  return SetRegValue(key_path, value_name, REG_SZ, data.c_str(), data.size() * sizeof(wchar_t));
}

int SetRegDword(const std::wstring& key_path, const std::wstring& value_name, std::uint32_t data) {
  return SetRegValue(key_path, value_name, REG_DWORD, &data, sizeof(data));
}

}  // namespace nhupdate
