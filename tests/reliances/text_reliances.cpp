// Texts, command lines, languages.

#include <tuple>

#include "tests/reliances/reliance.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate_test {

namespace {

// The arguments behind the first, which is the program, each in brackets.
std::string Split(const wchar_t* command_line) {
  int count = 0;
  wchar_t** const arguments = ::CommandLineToArgvW(command_line, &count);
  std::string text;
  for (int index = 1; index < count; ++index) {
    text += '[';
    for (const wchar_t* unit = arguments[index]; *unit != L'\0'; ++unit) {
      text += static_cast<char>(*unit);
    }
    text += ']';
  }
  ::LocalFree(arguments);
  return text;
}

std::string Hex(const std::wstring& text) {
  std::string hex;
  for (const wchar_t unit : text) {
    for (int shift = 12; shift >= 0; shift -= 4) {
      hex += "0123456789ABCDEF"[(static_cast<unsigned>(unit) >> shift) & 0xF];
    }
    hex += ' ';
  }
  return hex.substr(0, hex.size() - 1);
}

std::string FromUtf8(const std::string& bytes) {
  std::wstring text(16, L'\0');
  const int units = ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()),
                                          text.data(), static_cast<int>(text.size()));
  return Hex(text.substr(0, static_cast<std::size_t>(units)));
}

}  // namespace

Reliances TextReliances() {
  return {
      {"CommandLineToArgvW, blanks and tabs", "[a][b][c]", Wine::kAsWindows,
       [](const std::wstring&) { return Split(L"x.exe a  b\tc "); }},
      {"CommandLineToArgvW, quotation marks", "[a b][cd e]", Wine::kAsWindows,
       [](const std::wstring&) { return Split(L"x.exe \"a b\" c\"d e\""); }},
      {"CommandLineToArgvW, quotation marks behind backslashes", "[\"a\\][b\\\\c]",
       Wine::kAsWindows, [](const std::wstring&) { return Split(L"x.exe \\\"a\\ b\\\\c"); }},
      {"CommandLineToArgvW, an empty argument", "[][a]", Wine::kAsWindows,
       [](const std::wstring&) { return Split(L"x.exe \"\" a"); }},
      {"CommandLineToArgvW, quotation marks that are not closed", "[a b ]", Wine::kAsWindows,
       [](const std::wstring&) { return Split(L"x.exe \"a b "); }},
      {"CommandLineToArgvW, a program in a folder with a backslash before the mark", "[-update]",
       Wine::kAsWindows, [](const std::wstring&) { return Split(L"\"C:\\a folder\\\" -update"); }},
      {"CommandLineToArgvW, arguments of an empty command line", "1", Wine::kAsWindows,
       [](const std::wstring&) {
         int count = 0;
         ::LocalFree(::CommandLineToArgvW(L"", &count));
         return std::to_string(count);
       }},
      {"MultiByteToWideChar, a byte that is never UTF-8", "0061 FFFD 0062", Wine::kAsWindows,
       [](const std::wstring&) {
         return FromUtf8(
             "a\xFF"
             "b");
       }},
      {"MultiByteToWideChar, four bytes for one character", "D83D DE00", Wine::kAsWindows,
       [](const std::wstring&) { return FromUtf8("\xF0\x9F\x98\x80"); }},
      {"WideCharToMultiByte, bytes of half a pair", "3", Wine::kAsWindows,
       [](const std::wstring&) {
         return std::to_string(
             ::WideCharToMultiByte(CP_UTF8, 0, L"\xD83D", 1, nullptr, 0, nullptr, nullptr));
       }},
      {"CompareStringOrdinal, letters beyond English in both cases", "2", Wine::kAsWindows,
       [](const std::wstring&) {
         return std::to_string(
             ::CompareStringOrdinal(L"\x00C4\x0416", 2, L"\x00E4\x0436", 2, TRUE));
       }},
      {"GetUserPreferredUILanguages, asked for the room alone", "0", Wine::kAsWindows,
       [](const std::wstring&) {
         ULONG count = 0;
         ULONG units = 0;
         return ErrorOf(::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, nullptr, &units) !=
                        FALSE);
       }},
      {"GetUserPreferredUILanguages, too little room", "122", Wine::kAsWindows,
       [](const std::wstring&) {
         ULONG count = 0;
         ULONG units = 1;
         wchar_t unit = L'\0';
         return ErrorOf(::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, &unit, &units) !=
                        FALSE);
       }},
      {"GetUserPreferredUILanguages, does the list end with two terminators", "yes",
       Wine::kAsWindows,
       [](const std::wstring&) {
         ULONG count = 0;
         ULONG units = 0;
         ::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, nullptr, &units);
         std::wstring list(units, L'x');
         ::GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, list.data(), &units);
         return YesOrNo(count > 0 && list.ends_with(std::wstring(2, L'\0')));
       }},
  };
}

}  // namespace nhupdate_test
