#include "base/format.h"

#include <limits>

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(FormatTest, LeavesATextWithoutPlaceholdersAlone) {
  EXPECT_EQ(Format(L""), L"");
  EXPECT_EQ(Format(L"Process elevated."), L"Process elevated.");
  EXPECT_EQ(Format(L"\u7E41\u9AD4 \U0001F600\n"), L"\u7E41\u9AD4 \U0001F600\n");
}

TEST(FormatTest, PutsWideTextsInPlaceUpToTheirNul) {
  const std::wstring string = L"string \u00FC";
  wchar_t array[] = L"array";
  const wchar_t* pointer = L"pointer";

  EXPECT_EQ(Format(L"%s, %s, %s.", string, array, pointer), L"string \u00FC, array, pointer.");
  EXPECT_EQ(Format(L"<%s|%s>", std::wstring(), L""), L"<|>");
  EXPECT_EQ(Format(L"<%s>", std::wstring(L"ab\0cd", 5)), L"<ab>");
  EXPECT_EQ(Format(L"%s", L""), L"");
}

TEST(FormatTest, ShowsEvery32BitNumberSigned) {
  EXPECT_EQ(Format(L"%d %d", 0, -1), L"0 -1");
  EXPECT_EQ(Format(L"%d", std::numeric_limits<int>::max()), L"2147483647");
  EXPECT_EQ(Format(L"%d", std::numeric_limits<int>::min()), L"-2147483648");
  EXPECT_EQ(Format(L"%d %d", std::uint32_t{0xFFFFFFFF}, LONG{-7}), L"-1 -7");
  EXPECT_EQ(Format(L"%d %d", DWORD{0xC0000005}, DWORD{0x7FFFFFFF}), L"-1073741819 2147483647");
}

TEST(FormatTest, FillsANumberUpToTwoDigits) {
  EXPECT_EQ(Format(L"%d%02d%02d", 2027, 3, 1), L"20270301");
  EXPECT_EQ(Format(L"%02d %02d %02d %02d", 0, 12, 123, -5), L"00 12 123 -5");
}

TEST(FormatTest, ShowsADoubledPercentSignOnce) {
  EXPECT_EQ(Format(L"%%"), L"%");
  EXPECT_EQ(Format(L"100%% of %d%%", 5), L"100% of 5%");
  EXPECT_EQ(Format(L"%%s and %%%d", 5), L"%s and %5");
}

TEST(FormatTest, TakesNoPlaceholderFromAnArgument) {
  const std::wstring path = L"C:\\100%\\%s%d%n%%\\%1!s!";

  EXPECT_EQ(Format(L"Launch path : %s (%d)", path, 3),
            L"Launch path : C:\\100%\\%s%d%n%%\\%1!s! (3)");
}

TEST(FormatTest, PassesUnpairedSurrogatesOn) {
  const std::wstring text = {L'a', wchar_t{0xD800}, L'b', wchar_t{0xDC00}};

  EXPECT_EQ(Format(L"%s", text), text);
}

TEST(FormatTest, HasNoFixedLimit) {
  // Around the sizes that buffers usually have, and far beyond.
  for (const std::size_t size :
       {255U, 256U, 257U, 511U, 512U, 1023U, 1024U, 1025U, 2048U, 4096U, 65536U, 1048576U}) {
    const std::wstring path(size, L'\u00E9');

    const std::wstring text = Format(L"<%s|%d|%s>", path, 42, path);

    EXPECT_TRUE(text == L"<" + path + L"|42|" + path + L">") << size << " characters";
  }
}

}  // namespace
}  // namespace nhupdate_test
