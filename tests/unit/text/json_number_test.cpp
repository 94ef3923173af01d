#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/unit/text/json_table.h"

namespace nhupdate_test {
namespace {

using nhupdate::ParseNumber;
using nhupdate::ParseValue;
using namespace std::string_view_literals;

// All digits of that many halves of the smallest value above 0. That one is 2 to the power of
// -1074; so a half is 5 to the power of 1075, shifted by 1075 digits.
std::wstring HalvesOfTheSmallest(std::uint64_t count) {
  constexpr std::size_t kDigits = 1075;
  std::wstring number = std::to_wstring(count);
  number.insert(0, kDigits - number.size(), L'0');
  for (std::size_t power = 0; power < kDigits; ++power) {
    int carry = 0;
    for (auto digit = number.rbegin(); digit != number.rend(); ++digit) {
      const int product = 5 * (*digit - L'0') + carry;
      *digit = static_cast<wchar_t>(L'0' + product % 10);
      carry = product / 10;
    }
  }
  return L"." + number;
}

TEST(ParseNumberTest, ReadsIntegers) {
  ExpectReadings(ParseNumber, {{L"0,", 1, "0"},
                               {L"42,", 2, "42"},
                               {L"+42,", 3, "42"},
                               {L"-42,", 3, "-42"},
                               {L"007,", 3, "7"},
                               {L"-007,", 4, "-7"},
                               {L"-0,", 2, "0"}});
}

TEST(ParseNumberTest, ReadsAnythingWithAFullStopAsReal) {
  ExpectReadings(ParseNumber, {{L"1.5,", 3, "real 1.5"},
                               {L"1.,", 2, "real 1"},
                               {L"-.5,", 3, "real -0.5"},
                               {L"+.5,", 3, "real 0.5"},
                               {L".5,", 2, "real 0.5"},
                               {L"0.1,", 3, "real 0.1"},
                               {L"-0.,", 3, "real -0"},
                               {L"00012.50,", 8, "real 12.5"},
                               {L"0.30000000000000004,", 19, "real 0.30000000000000004"},
                               {L"9007199254740993.,", 17, "real 9007199254740992"}});
}

TEST(ParseNumberTest, ReadsARunWithoutDigitsAsZero) {
  ExpectReadings(ParseNumber, {{L"-,", 1, "0"},
                               {L"+,", 1, "0"},
                               {L"-x", 1, "0"},
                               {L".,", 1, "real 0"},
                               {L"-.,", 2, "real -0"},
                               {L",", 0, "0"}});
}

TEST(ParseNumberTest, EndsAtTheFirstOtherUnit) {
  ExpectReadings(ParseNumber, {{L"1e5,", 1, "1"},
                               {L"1.5e5,", 3, "real 1.5"},
                               {L"0x10,", 1, "0"},
                               {L"1-2,", 1, "1"},
                               {L"--1,", 1, "0"},
                               {L"+-1,", 1, "0"},
                               {L"- 1,", 1, "0"},
                               {L"1 2,", 1, "1"},
                               {L"12\"", 2, "12"},
                               {L"1\x0661,", 1, "1"},  // no ASCII digit
                               {L"1\xFF12,", 1, "1"}});
}

TEST(ParseNumberTest, FailsAtASecondFullStop) {
  ExpectReadings(ParseNumber, {{L"1.2.3,", -1},
                               {L"1..,", -1},
                               {L"..,", -1},
                               {L"-1.2.,", -1},
                               {L"1.2.", -1},
                               {L"1.2x.", 3, "real 1.2"}});
}

TEST(ParseNumberTest, FailsWhenNothingFollowsWithinTheBound) {
  ExpectReadingsWithin(ParseNumber, {{L"12", 2, -1},
                                     {L"12,", 2, -1},
                                     {L"12,", 3, 2, "12"},
                                     {L"1.5,", 3, -1},
                                     {L"-", 1, -1},
                                     {L"-,", 1, -1},
                                     {L"12", 100, -1},
                                     {L"12\0,"sv, 4, -1},
                                     {L"-\0"sv, 2, -1}});
}

TEST(ParseNumberTest, SaturatesBeforeTheSignIsApplied) {
  ExpectReadings(ParseNumber, {{L"9223372036854775806,", 19, "9223372036854775806"},
                               {L"9223372036854775807,", 19, "9223372036854775807"},
                               {L"9223372036854775808,", 19, "9223372036854775807"},
                               {L"99999999999999999999,", 20, "9223372036854775807"},
                               {L"-9223372036854775807,", 20, "-9223372036854775807"},
                               {L"-9223372036854775808,", 20, "-9223372036854775807"},
                               {L"-99999999999999999999,", 21, "-9223372036854775807"}});
}

TEST(ParseNumberTest, ReadsRunsOfAnyLength) {
  const std::wstring zeros(400, L'0');
  const std::wstring nines(400, L'9');
  ExpectReadings(ParseNumber, {{zeros + L"5,", 401, "5"},
                               {nines + L",", 400, "9223372036854775807"},
                               {nines + L".,", 401, "real inf"},
                               {L"-" + nines + L".,", 402, "real -inf"},
                               {L"." + zeros + L"1,", 402, "real 0"},
                               {L"-." + zeros + L"1,", 403, "real -0"},
                               {L"0." + zeros + L"1,", 403, "real 0"},
                               {zeros + L"." + zeros + L",", 801, "real 0"},
                               {L"1." + zeros + L"1,", 403, "real 1"},
                               {L"0." + zeros.substr(0, 323) + L"5,", 326, "real 5e-324"}});
}

TEST(ParseNumberTest, ReadsAMillionDigits) {
  constexpr int kCount = 1'000'000;
  const std::wstring ones(kCount, L'1');
  ExpectReadings(ParseNumber, {{ones + L",", kCount, "9223372036854775807"},
                               {L"-" + ones + L".5,", kCount + 3, "real -inf"},
                               {L"1." + ones + L",", kCount + 2, "real 1.1111111111111112"}});
}

// What decides may stand further behind than any value has digits.
TEST(ParseNumberTest, RoundsByDigitsOfAnyDistance) {
  const std::wstring zeros(2000, L'0');
  const std::wstring nines(2000, L'9');
  const std::wstring half = L"9007199254740993." + zeros;
  ExpectReadings(ParseNumber, {{half + L"0,", 2018, "real 9007199254740992"},
                               {half + L"1,", 2018, "real 9007199254740994"},
                               {L"9007199254740992." + nines + L",", 2017, "real 9007199254740992"},
                               {L"9007199254740993." + nines + L",", 2017, "real 9007199254740994"},
                               {zeros + L"1." + nines + L",", 4002, "real 2"},
                               {L"." + zeros + nines + L",", 4001, "real 0"},
                               {nines + L"." + nines + L",", 4001, "real inf"}});
}

TEST(ParseNumberTest, PutsTheFullStopAnywhere) {
  const std::wstring zeros(100'000, L'0');
  ExpectReadings(ParseNumber, {{L"." + zeros + L"1,", 100'002, "real 0"},
                               {L"1" + zeros + L".,", 100'002, "real inf"},
                               {zeros + L"12." + zeros + L",", 200'003, "real 12"},
                               {L".00" + zeros.substr(0, 298) + L"25,", 303, "real 2.5e-301"},
                               {L"25" + zeros.substr(0, 298) + L".0,", 302, "real 2.5e+299"}});
}

// Of what lies halfway between two values that one is taken whose last bit is 0. Not every run-time
// library knows that of the smallest ones.
TEST(ParseNumberTest, RoundsTheSmallestValuesFromHalfwayToo) {
  ExpectReadings(ParseNumber, {{HalvesOfTheSmallest(1) + L",", 1076, "real 0"},
                               {HalvesOfTheSmallest(3) + L",", 1076, "real 1e-323"},
                               {HalvesOfTheSmallest(5) + L",", 1076, "real 1e-323"},
                               {HalvesOfTheSmallest(7) + L",", 1076, "real 2e-323"},
                               {HalvesOfTheSmallest(7) + L"1,", 1077, "real 2e-323"},
                               {L"-" + HalvesOfTheSmallest(63) + L",", 1077, "real -1.6e-322"}});
}

// The smallest value that has all its bits, and what lies halfway to its neighbours.
TEST(ParseNumberTest, RoundsAtTheEndOfTheSmallestValues) {
  constexpr std::uint64_t kSmallestWhole = std::uint64_t{1} << 53;
  ExpectReadings(
      ParseNumber,
      {{HalvesOfTheSmallest(kSmallestWhole - 2) + L",", 1076, "real 2.225073858507201e-308"},
       {HalvesOfTheSmallest(kSmallestWhole - 1) + L",", 1076, "real 2.2250738585072014e-308"},
       {HalvesOfTheSmallest(kSmallestWhole) + L",", 1076, "real 2.2250738585072014e-308"},
       {HalvesOfTheSmallest(kSmallestWhole + 1) + L",", 1076, "real 2.2250738585072014e-308"},
       {HalvesOfTheSmallest(kSmallestWhole + 1) + L"1,", 1077, "real 2.225073858507202e-308"}});
}

TEST(ParseValueTest, TakesASignOrADigitForANumberButNoFullStop) {
  ExpectReadings(
      ParseValue,
      {{L"-.5,", 3, "real -0.5"}, {L"+.5,", 3, "real 0.5"}, {L".5,", -1}, {L"  .5,", -3}});
}

}  // namespace
}  // namespace nhupdate_test
