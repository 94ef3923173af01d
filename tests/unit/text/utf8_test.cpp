#include "text/utf8.h"

#include <climits>

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

using namespace std::string_literals;

std::wstring Convert(const std::string& bytes) {
  return Utf8ToWide(bytes.data(), static_cast<int>(bytes.size()));
}

TEST(Utf8ToWideTest, ConvertsSequencesOfEveryLengthAndReplacesInvalidBytes) {
  const struct {
    std::string bytes;
    std::wstring text;
  } cases[] = {
      {"Az09~", L"Az09~"},
      {"\xC3\xA9\xDF\xBF", L"\u00E9\u07FF"},
      {"\xE0\xA0\x80\xE6\x96\xB0\xEF\xBF\xBF", L"\u0800\u65B0\xFFFF"},
      {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\xD800\xDC00\xDBFF\xDFFF"},
      {"a\0b\0"s, L"a\0b\0"s},
      {"\0"s, L"\0"s},
      {"\xEF\xBB\xBFx", L"\xFEFFx"},  // a mark stays
      {"x\xFFx", L"x\uFFFDx"},
      {"\x80", L"\uFFFD"},
      {"a\xC3", L"a\uFFFD"},
      {"\xC3(", L"\uFFFD("},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Convert(c.bytes), c.text) << PrintToString(c.bytes);
  }
}

TEST(Utf8ToWideTest, ConvertsExactlyTheBytesThatAreCounted) {
  const char bytes[] = {'a', 'b', 'c', 'd'};  // no terminator

  EXPECT_EQ(Utf8ToWide(bytes, 4), L"abcd");
  EXPECT_EQ(Utf8ToWide(bytes, 2), L"ab");
  EXPECT_EQ(Utf8ToWide(bytes + 3, 1), L"d");
  for (const int count : {0, -1, INT_MIN}) {
    EXPECT_EQ(Utf8ToWide(bytes, count), L"") << count;
  }
  EXPECT_EQ(Utf8ToWide(nullptr, 0), L"");
}

// How many U+FFFD stand for a longer invalid sequence depends on the system's version.
TEST(Utf8ToWideTest, ReplacesLongerInvalidSequencesAndGoesOnBehindThem) {
  const std::string sequences[] = {
      "\xC0\x80",          // longer than needed
      "\xE0\x80\xAF",      // longer than needed
      "\xED\xA0\x80",      // a surrogate
      "\xF4\x90\x80\x80",  // beyond the last character
      "\xE6\x96",          // cut off
      "\xF0\x9F\x98",      // cut off
  };
  for (const std::string& sequence : sequences) {
    const std::wstring text = Convert("a" + sequence + "b");

    ASSERT_GE(text.size(), 3U);
    EXPECT_EQ(text.front(), L'a');
    EXPECT_EQ(text.back(), L'b');
    EXPECT_EQ(text.find_first_not_of(L'\uFFFD', 1), text.size() - 1) << PrintToString(text);
  }
}

TEST(Utf8ToWideTest, AsksForUtf8WithoutFlagsAndGivesNothingWhenItGetsNothing) {
  for (const int failing_call : {1, 2}) {
    std::wstring text = L"as it was";
    {
      const INTERPOSER(MultiByteToWideChar) convert([&](UINT page, DWORD flags, auto... rest) {
        EXPECT_EQ(page, 65001U);
        EXPECT_EQ(flags, 0U);
        return convert.Calls() == failing_call ? 0 : convert.Original()(page, flags, rest...);
      });
      text = Utf8ToWide("abc", 3);
      EXPECT_EQ(convert.Calls(), failing_call);
    }

    EXPECT_EQ(text, L"");
  }
}

}  // namespace
}  // namespace nhupdate_test
