#include "base/strings.h"

#include <limits>

#include "tests/support/basics.h"

namespace nhupdate_test {
namespace {

TEST(LeftPartAndRestFromTest, NeverGoBeyondTheText) {
  constexpr int kMin = std::numeric_limits<int>::min();
  constexpr int kMax = std::numeric_limits<int>::max();
  const struct {
    const wchar_t* text;
    int index;
    const wchar_t* left;
    const wchar_t* rest;
  } cases[] = {
      {L"abcde", 0, L"", L"abcde"}, {L"abcde", 1, L"a", L"bcde"}, {L"abcde", 4, L"abcd", L"e"},
      {L"abcde", 5, L"abcde", L""}, {L"abcde", 6, L"abcde", L""}, {L"abcde", kMax, L"abcde", L""},
      {L"abcde", -1, L"", L""},     {L"abcde", kMin, L"", L""},   {L"", 0, L"", L""},
      {L"", 3, L"", L""},
  };

  for (const auto& c : cases) {
    EXPECT_EQ(LeftPart(c.text, c.index), c.left) << c.index;
    EXPECT_EQ(RestFrom(c.text, c.index), c.rest) << c.index;
  }
}

TEST(ReplaceAllTest, ReplacesFromLeftToRightAndCounts) {
  const struct {
    const wchar_t* text;
    const wchar_t* old_text;
    const wchar_t* new_text;
    const wchar_t* expected;
    int replacements;
  } cases[] = {
      {L"en_US", L"_", L"-", L"en-US", 1},
      {L"zh_Hant_TW", L"_", L"-", L"zh-Hant-TW", 2},
      {L"Default", L"_", L"-", L"Default", 0},
      {L"", L"_", L"-", L"", 0},
      {L"aaaaa", L"aa", L"b", L"bba", 2},   // occurrences don't overlap
      {L"aaa", L"a", L"aa", L"aaaaaa", 3},  // what was put in isn't looked at again
      {L"abab", L"ba", L"", L"ab", 1},      // nor what moved together
      {L"x%sx", L"%s", L"%d", L"x%dx", 1},
      {L"_a_", L"_", L"", L"a", 2},  // at both ends
      {L"abc", L"abc", L"", L"", 1},
      {L"AbC", L"abc", L"x", L"AbC", 0},  // letter case counts
      {L"abc", L"abcd", L"x", L"abc", 0},
      {L"abc", L"", L"x", L"abc", 0},
  };

  for (const auto& c : cases) {
    std::wstring text = c.text;

    const int replacements = ReplaceAll(text, c.old_text, c.new_text);

    EXPECT_EQ(text, c.expected);
    EXPECT_EQ(replacements, c.replacements) << PrintToString(c.text);
  }
}

TEST(EqualsIgnoringCaseTest, FoldsNothingButTheLettersAToZ) {
  const struct {
    std::wstring left;
    std::wstring right;
    bool expected;
  } cases[] = {
      {L"", L"", true},
      {L"abc", L"abc", true},
      {L"abc", L"ABC", true},
      {L"NHUpdateManager.exe", L"nhupdatemanager.EXE", true},
      {L"azAZ", L"AZaz", true},
      {L"abc", L"abd", false},
      {L"abc", L"ab", false},
      {L"ab", L"abc", false},
      {L"", L"a", false},
      {L"@", L"`", false},  // the neighbours of A and a
      {L"[", L"{", false},  // the neighbours of Z and z
      {L"0", L"\x10", false},
      {L"\u00C4", L"\u00E4", false},  // umlauts
      {L"\u0130", L"i", false},       // the Turkish capital I with a dot
      {L"\u212A", L"k", false},       // the Kelvin sign
      {L"\uFF21", L"\uFF41", false},  // full-width letters
      {L"\u0141", L"a", false},       // whose lower byte is A
      // A NUL is a character like any other.
      {{L'a', L'\0', L'b'}, {L'A', L'\0', L'B'}, true},
      {{L'a', L'\0', L'b'}, {L'a', L'\0', L'c'}, false},
  };

  for (const auto& c : cases) {
    SCOPED_TRACE(PrintToString(c.left) + " and " + PrintToString(c.right));

    EXPECT_EQ(EqualsIgnoringCase(c.left, c.right), c.expected);
    EXPECT_EQ(EqualsIgnoringCase(c.right, c.left), c.expected);
  }
}

TEST(StartsWithIgnoringCaseTest, ComparesTheBeginningOnly) {
  const struct {
    const wchar_t* text;
    const wchar_t* prefix;
    bool expected;
  } cases[] = {
      {L"abc", L"", true},      {L"", L"", true},
      {L"abc", L"AB", true},    {L"ABC", L"abc", true},
      {L"abc", L"abcd", false}, {L"abc", L"bc", false},
      {L"", L"a", false},       {L"\u00C4b", L"\u00E4", false},
  };

  for (const auto& c : cases) {
    EXPECT_EQ(StartsWithIgnoringCase(c.text, c.prefix), c.expected)
        << PrintToString(c.text) << " and " << PrintToString(c.prefix);
  }
}

}  // namespace
}  // namespace nhupdate_test
