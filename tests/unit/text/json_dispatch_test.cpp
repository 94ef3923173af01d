#include <string>

#include "tests/unit/text/json_table.h"

namespace nhupdate_test {
namespace {

using nhupdate::ParseValue;
using namespace std::string_view_literals;

TEST(ParseValueTest, ReadsEveryKindOfValue) {
  ExpectReadings(ParseValue, {{LR"({})", 2, "{}"},
                              {LR"([])", 2, "[]"},
                              {LR"("a")", 3, R"("a")"},
                              {LR"(null)", 4, "null"},
                              {LR"(true)", 4, "true"},
                              {LR"(false)", 5, "false"},
                              {LR"(1,)", 1, "1"},
                              {LR"(+1,)", 2, "1"},
                              {LR"(-1,)", 2, "-1"},
                              {LR"(1.5,)", 3, "real 1.5"}});
}

TEST(ParseValueTest, TakesEveryDecimalDigitForANumber) {
  for (wchar_t digit = L'0'; digit <= L'9'; ++digit) {
    const std::string value(1, static_cast<char>(digit));
    EXPECT_EQ(ReadJson(ParseValue, std::wstring{digit, L','}), (JsonReading{1, value}));
  }
}

TEST(ParseValueTest, RefusesEveryOtherUnit) {
  const std::wstring beginnings = L"{[\"+-0123456789FNTfnt";
  int refused = 0;
  for (wchar_t unit = 33; unit < 0xFFFF; ++unit) {
    if (beginnings.find(unit) != std::wstring::npos) {
      continue;
    }
    const JsonReading reading = ReadJson(ParseValue, std::wstring{unit, L'1', L','});
    ASSERT_EQ(reading, (JsonReading{-1})) << "unit " << static_cast<int>(unit);
    ++refused;
  }

  EXPECT_EQ(refused, 0xFFFF - 33 - static_cast<int>(beginnings.size()));
}

TEST(ParseValueTest, SkipsEveryUnitFrom1To32) {
  for (wchar_t unit = 1; unit <= 32; ++unit) {
    EXPECT_EQ(ReadJson(ParseValue, std::wstring{unit} + L"true"), (JsonReading{5, "true"}))
        << "unit " << static_cast<int>(unit);
  }
  EXPECT_EQ(ReadJson(ParseValue, L"!true"), (JsonReading{-1}));  // 33
}

TEST(ParseValueTest, AddsTheWhitespaceToTheResult) {
  ExpectReadings(ParseValue, {{L"  null", 6, "null"},
                              {L" \r\n[1]", 6, "[1]"},
                              {L" {}", 3, "{}"},
                              {L"\t\"a\"", 4, "\"a\""},
                              {L" 12,", 3, "12"},
                              // Nothing begins with these.
                              {L"x", -1},
                              {L" x", -2},
                              {L"  x", -3},
                              {L" \t\r\n}", -5},
                              {L" .5,", -2},
                              {L" \u00A01,", -2},  // no whitespace here, a blank elsewhere
                              // Nothing else is there.
                              {L" "sv, -2},
                              {L"    "sv, -5},
                              {L"  \0true"sv, -3},
                              {L"\0true"sv, -1}});
}

// A sum of 0 is no success, and a positive one looks like one.
TEST(ParseValueTest, HidesAFailureThatIsSmallerThanTheWhitespace) {
  ExpectReadings(ParseValue, {{L"nope", -1},
                              {L" nope", -1},
                              {L"  nope", 1},
                              {L"   nope", 2},
                              {L"[,]", -2},
                              {L" [,]", -2},
                              {L"  [,]", -2},
                              {L"   [,]", 1},
                              {L"\"a\\", -4},
                              {L"  \"a\\", -4},
                              {L"    \"a\\", -4},
                              {L"     \"a\\", 1},
                              {L"     12", 4},
                              {L"     {\"a\"}", 1}});
}

TEST(ParseValueTest, LeavesWhatFollowsTheValueAlone) {
  ExpectReadings(ParseValue, {{L"{}}", 2, "{}"},
                              {L"[]x", 2, "[]"},
                              {L"\"a\"b", 3, "\"a\""},
                              {L"nullx", 4, "null"},
                              {L"null ", 4, "null"},
                              {L"1x", 1, "1"}});
}

TEST(ParseValueTest, ReadsNoFurtherThanTheBound) {
  ExpectReadingsWithin(ParseValue, {{LR"([1,2])", 4, -1},
                                    {LR"([1]2])", 3, 3, "[1]"},
                                    {LR"({"a":1})", 6, -1},
                                    {LR"("abc")", 3, 3, R"("ab")"},
                                    {LR"(  true)", 5, 1},
                                    {LR"(12,)", 2, -1},
                                    {LR"( x)", 1, -2}});
}

TEST(ParseValueTest, TakesTheTerminatorForTheEndWhenTheBoundIsLarger) {
  ExpectReadingsWithin(ParseValue, {{LR"([1,2])", 1000, 5, "[1,2]"},
                                    {LR"([1,2)", 1000, -1},
                                    {LR"("abc)", 1000, 4, R"("abc")"},
                                    {LR"("abc\)", 1000, -6},
                                    {LR"(12)", 1000, -1},
                                    {LR"(tru)", 1000, -1},
                                    {LR"( )", 1000, -2},
                                    {LR"()", 1000, -1},
                                    {LR"({"a":1})", 2147483647, 7, R"({"a":1})"}});
}

TEST(ParseValueTest, TakesANulWithinTheBoundForTheEnd) {
  ExpectReadings(ParseValue, {{L"[1\0]"sv, -1},
                              {L"[1]\0]"sv, 3, "[1]"},
                              {L"{\"a\":1\0}"sv, -1},
                              {L"\"a\0b\""sv, 2, "\"a\""},
                              {L"12\0,"sv, -1},
                              {L"fals\0e"sv, -1},
                              {L"[\"]\0\",1]"sv, -4}});
}

}  // namespace
}  // namespace nhupdate_test
