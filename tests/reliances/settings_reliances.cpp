// INI files and the registry. The registry values lie in a key of this program's own.

#include <array>

#include "tests/reliances/own_key.h"
#include "tests/reliances/reliance.h"

namespace nhupdate_test {

namespace {

std::string ReadVersion(const std::wstring& file, DWORD room = 64) {
  std::array<wchar_t, 64> value = {};
  ::GetPrivateProfileStringW(L"ProductVersion", L"Version", L"(none)", value.data(), room,
                             file.c_str());
  std::string narrow;
  for (const wchar_t* unit = value.data(); *unit != L'\0'; ++unit) {
    narrow += static_cast<char>(*unit);
  }
  return narrow;
}

std::string WideBytes(const std::wstring& text) {
  return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
}

// The bytes that are stored of a text of three units when those of the text alone are counted.
std::string StoredBytes(const wchar_t* text) {
  const COwnKey key;
  constexpr DWORD kThreeUnits = 3 * sizeof(wchar_t);
  ::RegSetValueExW(key.Get(), L"text", 0, REG_SZ, reinterpret_cast<const BYTE*>(text), kThreeUnits);
  DWORD size = 0;
  ::RegQueryValueExW(key.Get(), L"text", nullptr, nullptr, nullptr, &size);
  return std::to_string(size);
}

std::string StatusText(LSTATUS status) {
  return std::to_string(status);
}

}  // namespace

Reliances SettingsReliances() {
  return {
      {"GetPrivateProfileStringW, a value with blanks around it", "2.0.0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ReadVersion(
             MakeFile(folder + L"\\Version.txt", "[ProductVersion]\r\nVersion =  2.0.0  \r\n"));
       }},
      {"GetPrivateProfileStringW, a value in quotation marks", "2.0.0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ReadVersion(
             MakeFile(folder + L"\\Version.txt", "[ProductVersion]\r\nVersion=\"2.0.0\"\r\n"));
       }},
      {"GetPrivateProfileStringW, section and key in other letters", "2.0.0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ReadVersion(
             MakeFile(folder + L"\\Version.txt", "[PRODUCTVERSION]\r\nversion=2.0.0\r\n"));
       }},
      {"GetPrivateProfileStringW, the first section behind a UTF-8 mark", "(none)", Wine::kDiffers,
       [](const std::wstring& folder) {
         return ReadVersion(MakeFile(folder + L"\\Version.txt",
                                     "\xEF\xBB\xBF[ProductVersion]\r\nVersion=2.0.0\r\n"));
       }},
      {"GetPrivateProfileStringW, a file in UTF-16 with a mark", "2.0.0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ReadVersion(MakeFile(folder + L"\\Version.txt",
                                     WideBytes(L"\xFEFF[ProductVersion]\r\nVersion=2.0.0\r\n")));
       }},
      {"GetPrivateProfileStringW, a value of five units in a buffer of four", "2.0",
       Wine::kAsWindows,
       [](const std::wstring& folder) {
         return ReadVersion(
             MakeFile(folder + L"\\Version.txt", "[ProductVersion]\r\nVersion=2.0.0\r\n"), 4);
       }},
      {"GetPrivateProfileStringW, a missing file", "(none)", Wine::kAsWindows,
       [](const std::wstring& folder) { return ReadVersion(folder + L"\\Version.txt"); }},
      {"GetPrivateProfileStringW, a path of 300 units behind \\\\?\\", "2.0.0", Wine::kDiffers,
       [](const std::wstring& folder) {
         return ReadVersion(MakeFile(WithPrefix(MakeLongFolder(folder) + L"\\Version.txt"),
                                     "[ProductVersion]\r\nVersion=2.0.0\r\n"));
       }},
      {"RegSetValueExW, stored bytes of three counted units before a NUL", "8", Wine::kAsWindows,
       [](const std::wstring&) { return StoredBytes(L"abc"); }},
      {"RegSetValueExW, stored bytes of three counted units before another unit", "6",
       Wine::kAsWindows, [](const std::wstring&) { return StoredBytes(L"abcd"); }},
      {"RegQueryValueExW, a value that is larger than the buffer", "234", Wine::kAsWindows,
       [](const std::wstring&) {
         const COwnKey key;
         ::RegSetValueExW(key.Get(), L"text", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"abc"),
                          4 * sizeof(wchar_t));
         std::array<wchar_t, 2> buffer = {};
         DWORD size = sizeof(buffer);
         return StatusText(::RegQueryValueExW(key.Get(), L"text", nullptr, nullptr,
                                              reinterpret_cast<BYTE*>(buffer.data()), &size));
       }},
      {"RegQueryValueExW, a missing value", "2", Wine::kAsWindows,
       [](const std::wstring&) {
         const COwnKey key;
         return StatusText(
             ::RegQueryValueExW(key.Get(), L"none", nullptr, nullptr, nullptr, nullptr));
       }},
      {"RegOpenKeyExW, a missing key", "2", Wine::kAsWindows,
       [](const std::wstring&) {
         const COwnKey key;
         nhupdate::UniqueRegistryKey none;
         return StatusText(::RegOpenKeyExW(key.Get(), L"none", 0, KEY_READ, none.Receive()));
       }},
      {"RegCreateKeyExW, a key in keys that are missing", "0", Wine::kAsWindows,
       [](const std::wstring&) {
         const COwnKey key;
         nhupdate::UniqueRegistryKey deep;
         return StatusText(::RegCreateKeyExW(key.Get(), L"one\\two\\three", 0, nullptr,
                                             REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr,
                                             deep.Receive(), nullptr));
       }},
  };
}

}  // namespace nhupdate_test
