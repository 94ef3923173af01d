#include <string>

#include "tests/unit/text/json_table.h"

namespace nhupdate_test {
namespace {

using nhupdate::ParseString;
using nhupdate::ParseValue;
using namespace std::string_view_literals;

// ScanString and ParseString read the same.
void ExpectStringsWithin(std::initializer_list<BoundedJsonCase> cases) {
  ExpectReadingsWithin(ParseString, cases);
  for (const BoundedJsonCase& each : cases) {
    EXPECT_EQ(CReadableText(each.text, each.bound).ScanString(),
              (JsonReading{each.result, each.value}))
        << DescribeString(each.text) << " with the bound " << each.bound;
  }
}

void ExpectStrings(std::initializer_list<JsonCase> cases) {
  for (const JsonCase& each : cases) {
    ExpectStringsWithin({{each.text, static_cast<int>(each.text.size()), each.result, each.value}});
  }
}

TEST(ScanStringTest, ReadsUpToTheClosingQuote) {
  ExpectStrings({{LR"("")", 2, R"("")"},
                 {LR"("abc")", 5, R"("abc")"},
                 {LR"("abc"def")", 5, R"("abc")"},
                 {LR"(""abc)", 2, R"("")"},
                 {LR"("'{[,]}' ")", 10, R"("'{[,]}' ")"}});
}

TEST(ScanStringTest, StoresOrdinaryUnitsUnchanged) {
  ExpectStrings(
      {{L"\"a\n\t\x01 b\"", 8, R"("a\u000A\u0009\u0001 b")"},
       {L"\"\x7F\x80\xE9\x4E2D\xFFFE\xFFFF\"", 8, R"("\u007F\u0080\u00E9\u4E2D\uFFFE\uFFFF")"},
       {L"\"\xD83D\xDE00\"", 4, R"("\uD83D\uDE00")"},
       {L"\"\xDE00\xD83D\"", 4, R"("\uDE00\uD83D")"}});
}

TEST(ScanStringTest, AcceptsAStringThatRunsToTheBound) {
  ExpectStringsWithin({{LR"("ab)", 3, 3, R"("ab")"},
                       {LR"("abcd")", 3, 3, R"("ab")"},
                       {LR"(")", 1, 1, R"("")"},
                       {LR"("a\n)", 4, 4, R"("a\u000A")"},
                       {LR"("ab)", 100, 3, R"("ab")"},
                       {L"\"a\0b\""sv, 5, 2, R"("a")"},
                       {L"\"\0\""sv, 3, 1, R"("")"}});
}

TEST(ScanStringTest, NeverLooksAtTheFirstUnit) {
  ExpectStrings({{LR"(xab")", 4, R"("ab")"},
                 {LR"('ab"c)", 4, R"("ab")"},
                 {LR"(\")", 2, R"("")"},
                 {LR"(\n")", 3, R"("n")"},
                 {LR"( "")", 2, R"("")"}});
}

TEST(ScanStringTest, NeedsAQuoteSomewhereWithinTheBound) {
  ExpectStringsWithin({{LR"(ab)", 2, -1},
                       {LR"('ab')", 4, -1},
                       {LR"(ab")", 2, -1},
                       {LR"(ab")", 3, 3, R"("b")"},
                       {LR"(a\")", 3, 3, R"("\"")"},  // an escaped one will do
                       {L"ab\0\""sv, 4, -1}});
}

TEST(ScanStringTest, DecodesTheShortEscapes) {
  ExpectStrings({{LR"("\"")", 4, R"("\"")"},
                 {LR"("\/")", 4, R"("/")"},
                 {LR"("\n")", 4, R"("\u000A")"},
                 {LR"("\r")", 4, R"("\u000D")"},
                 {LR"("\t")", 4, R"("\u0009")"},
                 {LR"("a\"b\"c")", 9, R"("a\"b\"c")"}});
}

TEST(ScanStringTest, DropsTheUnitOfAnyOtherEscape) {
  const std::wstring known = L"\"/nrtu";
  for (wchar_t unit = 1; unit < 0x180; ++unit) {
    if (known.find(unit) != std::wstring::npos) {
      continue;
    }
    EXPECT_EQ(ReadJson(ParseString, L"\"a\\" + std::wstring{unit} + L"c\""),
              (JsonReading{6, R"("a\\c")"}))
        << "unit " << static_cast<int>(unit);
  }
}

TEST(ScanStringTest, ReadsAnEscapedBackslashAsOne) {
  ExpectStrings({{LR"("a\\b")", 6, R"("a\\b")"},
                 {LR"("a\bc")", 6, R"("a\\c")"},
                 {LR"("\\")", 4, R"("\\")"},
                 {LR"("\\n")", 5, R"("\\n")"},
                 {LR"("C:\\A\\B")", 10, R"("C:\\A\\B")"}});
}

TEST(ScanStringTest, FailsAtABackslashThatIsTheLastUnitWithinTheBound) {
  ExpectStringsWithin({{LR"("\)", 2, -3},
                       {LR"("ab\)", 4, -5},
                       {LR"("ab\"c")", 4, -5},
                       {LR"("ab\nc")", 4, -5},
                       {LR"("\n\)", 4, -5},
                       {LR"("\\\)", 4, -5},
                       {LR"("ab\)", 100, -5},
                       {L"\"a\\\0n\""sv, 6, -4},
                       {LR"("ab\n)", 5, 5, R"("ab\u000A")"}});
}

TEST(ScanStringTest, ReadsAMillionEscapes) {
  constexpr int kCount = 1'000'000;
  std::wstring text = L"\"";
  std::wstring expected;
  for (int count = 0; count < kCount; ++count) {
    text += L"a\\n\\u0041";
    expected += L"a\nA";
  }
  text += L'"';
  std::wstring scanned;

  EXPECT_EQ(nhupdate::ScanString(text.c_str(), static_cast<int>(text.size()), scanned),
            static_cast<int>(text.size()));

  EXPECT_TRUE(scanned == expected);
}

TEST(ScanUnicodeEscapeTest, AppendsTheUnitOfFourHexadecimalDigits) {
  ExpectStrings(
      {{LR"("\u00e9")", 8, R"("\u00E9")"},
       {LR"("\u00E9")", 8, R"("\u00E9")"},
       {LR"("\u0aFf")", 8, R"("\u0AFF")"},
       {LR"("\uABCD\uabcd\u1234\u5678\u90eF")", 32, R"("\uABCD\uABCD\u1234\u5678\u90EF")"},
       {LR"("\u0000a")", 9, R"("\u0000a")"},
       {LR"("\uFFFF")", 8, R"("\uFFFF")"},
       {LR"("\u0022")", 8, R"("\"")"},
       {LR"("\u005Cn")", 9, R"("\\n")"},
       {LR"("\u00415")", 9, R"("A5")"}});
}

TEST(ScanUnicodeEscapeTest, PairsNoSurrogates) {
  ExpectStrings({{LR"("\uD83D\uDE00")", 14, R"("\uD83D\uDE00")"},
                 {LR"("\uD83D")", 8, R"("\uD83D")"},
                 {LR"("\uDE00\uD83D")", 14, R"("\uDE00\uD83D")"}});
}

TEST(ScanUnicodeEscapeTest, StopsAtTheFirstUnitThatIsNoDigit) {
  ExpectStrings({{LR"("\u12G4")", 8, R"("\u0012")"},
                 {LR"("\u1G23")", 8, R"("\u0001")"},
                 {LR"("\u123 ")", 8, R"("\u0123")"},
                 {LR"("\uFFFF\u1G23")", 14, R"("\uFFFF\u0001")"},
                 {LR"("\u12"4")", 8, R"("\u0012")"},  // a quote among the four closes nothing
                 {LR"("\u0x41")", 8, R"("\u0000")"},
                 {L"\"\\u4\xFF11zz\"", 8, R"("\u0004")"}});
}

TEST(ScanUnicodeEscapeTest, KeepsThePreviousCodeWithoutAnyDigit) {
  ExpectStrings({{LR"("\uG000")", 8, R"("\u0000")"},
                 {LR"("\u0041\uG000")", 14, R"("AA")"},
                 {LR"("\u12G4\uzzzz")", 14, R"("\u0012\u0012")"},
                 {LR"("\u0041\ux042")", 14, R"("AA")"},
                 {LR"("\u0041\u 042")", 14, R"("AA")"},
                 {LR"("\u0041\u-042")", 14, R"("AA")"},
                 {LR"("\u0041\u+042")", 14, R"("AA")"},
                 {LR"("\u0041x\n\uG000")", 17, R"("Ax\u000AA")"}});
}

TEST(ScanUnicodeEscapeTest, ForgetsTheCodeAtTheEndOfTheString) {
  ExpectReadings(ParseValue, {{LR"(["\u0041" "\uG000"])", 19, R"(["A","\u0000"])"},
                              {LR"({"\u0041":"\uG000"})", 19, R"({"A":"\u0000"})"}});
}

TEST(ScanUnicodeEscapeTest, KeepsTheUnitsOfOneThatIsCutOff) {
  ExpectStringsWithin({{LR"("\u00)", 5, 5, R"("\\u00")"},
                       {LR"("\u00")", 6, 6, R"("\\u00\"")"},
                       {LR"("\u)", 3, 3, R"("\\u")"},
                       {LR"("a\u"")", 5, 5, R"("a\\u\"")"},
                       {LR"("\u004\)", 7, 7, R"("\u0004")"},
                       {LR"("\u004)", 6, 6, R"("\\u004")"},
                       {LR"("\u0041)", 7, 7, R"("A")"},
                       {LR"("\u00)", 100, 5, R"("\\u00")"},
                       {L"\"\\u00\0\0\""sv, 8, 5, R"("\\u00")"}});
}

}  // namespace
}  // namespace nhupdate_test
