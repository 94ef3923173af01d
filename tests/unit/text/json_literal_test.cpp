#include <cstddef>
#include <string>
#include <utility>

#include "tests/unit/text/json_table.h"

namespace nhupdate_test {
namespace {

using nhupdate::ParseLiteral;
using nhupdate::ParseValue;
using namespace std::string_view_literals;

// The name with the letters in upper case whose bits are set.
std::wstring WithUpperCase(std::wstring_view name, unsigned letters) {
  std::wstring text(name);
  for (std::size_t index = 0; index < text.size(); ++index) {
    if ((letters >> index & 1U) != 0) {
      text[index] = static_cast<wchar_t>(text[index] - 32);
    }
  }
  return text;
}

TEST(ParseLiteralTest, AcceptsEveryMixtureOfLetterCases) {
  const std::pair<std::wstring_view, const char*> literals[] = {
      {L"true", "true"}, {L"false", "false"}, {L"null", "null"}};
  for (const auto& [name, value] : literals) {
    const JsonReading expected{static_cast<int>(name.size()), value};
    for (unsigned letters = 0; letters < 1U << name.size(); ++letters) {
      const std::wstring text = WithUpperCase(name, letters);

      EXPECT_EQ(ReadJson(ParseLiteral, text), expected) << DescribeString(text);
      EXPECT_EQ(ReadJson(ParseValue, text), expected) << DescribeString(text);
    }
  }
}

TEST(ParseLiteralTest, LeavesTheUnitBehindTheLiteralAlone) {
  ExpectReadings(ParseLiteral,
                 {{L"nullx", 4, "null"}, {L"truefalse", 4, "true"}, {L"falsely", 5, "false"}});
}

TEST(ParseLiteralTest, RefusesEverythingElse) {
  ExpectReadings(ParseLiteral, {{L"nope", -1},
                                {L"trux", -1},
                                {L"fault", -1},
                                {L"fals ", -1},
                                // By 32 or 96 away from the right letter; its capital is 32 away.
                                {L"NUL,", -1},
                                {L"TRU%", -1},
                                {L"tru\u0085", -1},
                                {L"nul\u00CC", -1},
                                {L"t\x0152ue", -1},
                                {L"xrue", -1},
                                {L" true", -1},
                                {L"\"true\"", -1},
                                {L"alse ", -1},
                                {L"ntrue", -1}});
}

TEST(ParseLiteralTest, NeedsAllItsUnitsWithinTheBound) {
  ExpectReadingsWithin(ParseLiteral, {{L"true", 3, -1},
                                      {L"null", 1, -1},
                                      {L"null", 4, 4, "null"},
                                      {L"tru", 4, -1},
                                      {L"nul\0l"sv, 5, -1},
                                      {L"false", 4, -1},
                                      {L"FALSE", 4, -1},
                                      {L"false", 5, 5, "false"},
                                      {L"fals", 5, -1},
                                      {L"fals\0e"sv, 6, -1}});
}

}  // namespace
}  // namespace nhupdate_test
