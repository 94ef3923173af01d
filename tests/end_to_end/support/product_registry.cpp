#include "tests/end_to_end/support/product_registry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

constexpr const wchar_t* kKeys[] = {
    L"SOFTWARE\\WOW6432Node\\CorvaneNimba",
    L"SOFTWARE\\WOW6432Node\\CorvaneNimbaHub",
    L"SOFTWARE\\Microsoft\\Windows\\Windows Error Reporting\\LocalDumps\\NHUpdateManager.exe",
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\NIMBA HUB",
};

std::wstring Today() {
  SYSTEMTIME now = {};
  ::GetLocalTime(&now);
  return std::to_wstring(now.wYear * 10000 + now.wMonth * 100 + now.wDay);
}

const std::wstring kFirstDay = Today();

// A run that begins before midnight may have registered the product on either day.
bool IsDayOfTheRun(const std::wstring& text) {
  return text == kFirstDay || text == Today();
}

// How many bytes are stored for a text of so many UTF-16 units. The program doesn't count the
// terminator, but Windows stores it when it follows what is counted.
std::size_t StoredBytes(std::size_t units) {
  const std::size_t terminator = units > 0 ? 1 : 0;
  return (units + terminator) * sizeof(wchar_t);
}

std::string DataText(DWORD type, const std::vector<BYTE>& data) {
  if (type == REG_DWORD && data.size() == sizeof(DWORD)) {
    DWORD number = 0;
    std::memcpy(&number, data.data(), sizeof(number));
    return std::to_string(number);
  }
  std::wstring text(data.size() / sizeof(wchar_t) + 1, L'\0');
  std::memcpy(text.data(), data.data(), data.size());
  text.resize(text.find(L'\0'));
  std::string shown = "\"" + (IsDayOfTheRun(text) ? "{today}" : ToUtf8(text)) + "\"";
  if (type != REG_SZ) {
    shown += ", type " + std::to_string(type);
  }
  return data.size() == StoredBytes(text.size())
             ? shown
             : shown + ", " + std::to_string(data.size()) + " bytes";
}

std::vector<std::string> ValuesOf(HKEY key, const std::wstring& path) {
  std::vector<std::string> lines;
  std::array<wchar_t, 256> name = {};
  std::vector<BYTE> data(4096);
  for (DWORD index = 0;; ++index) {
    DWORD name_units = static_cast<DWORD>(name.size());
    DWORD byte_count = static_cast<DWORD>(data.size());
    DWORD type = 0;
    if (::RegEnumValueW(key, index, name.data(), &name_units, nullptr, &type, data.data(),
                        &byte_count) != ERROR_SUCCESS) {
      break;
    }
    lines.push_back(ToUtf8(path + L"|" + name.data()) + " = " +
                    DataText(type, {data.begin(), data.begin() + byte_count}) + "\n");
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::string Describe(const std::wstring& path) {
  nhupdate::UniqueRegistryKey key;
  if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, key.Receive()) !=
      ERROR_SUCCESS) {
    return {};
  }
  std::string description;
  for (const std::string& line : ValuesOf(key.Get(), path)) {
    description += line;
  }
  std::vector<std::wstring> sub_keys;
  std::array<wchar_t, 256> name = {};
  for (DWORD index = 0; ::RegEnumKeyW(key.Get(), index, name.data(),
                                      static_cast<DWORD>(name.size())) == ERROR_SUCCESS;
       ++index) {
    sub_keys.push_back(path + L"\\" + name.data());
  }
  std::sort(sub_keys.begin(), sub_keys.end());
  for (const std::wstring& sub_key : sub_keys) {
    description += Describe(sub_key);
  }
  return description;
}

}  // namespace

void DeleteProductKeys() {
  for (const wchar_t* key : kKeys) {
    ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, key);
  }
}

std::string DescribeProductKeys() {
  std::string description;
  for (const wchar_t* key : kKeys) {
    description += Describe(key);
  }
  return description;
}

}  // namespace nhupdate_test
