#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/support/json_generator.h"
#include "tests/support/naive_json_reader.h"

namespace nhupdate_test {
namespace {

constexpr int kTexts = 40'000;
constexpr int kDepth = 4;

// A bound at the end of the text, before it or behind it.
int AnyBound(CJsonGenerator& generator, std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  switch (generator.Below(4)) {
    case 0:
      return generator.Below(length + 1);
    case 1:
      return length + 1 + generator.Below(50);
    default:
      return length;
  }
}

template <typename MakeText>
void ExpectAgreement(std::uint32_t seed, MakeText make_text) {
  CJsonGenerator generator(seed);
  for (int count = 0; count < kTexts; ++count) {
    const std::wstring text = make_text(generator);
    ASSERT_EQ(DisagreementOn(text, AnyBound(generator, text)), "") << "text " << count;
  }
}

TEST(TwoJsonReadersTest, AgreeOnWellFormedTexts) {
  ExpectAgreement(1, [](CJsonGenerator& generator) { return generator.Value(kDepth); });
}

TEST(TwoJsonReadersTest, AgreeOnDamagedTexts) {
  ExpectAgreement(2, [](CJsonGenerator& generator) { return generator.DamagedValue(kDepth); });
}

TEST(TwoJsonReadersTest, AgreeOnNoise) {
  ExpectAgreement(3,
                  [](CJsonGenerator& generator) { return generator.Noise(generator.Below(24)); });
}

TEST(TwoJsonReadersTest, AgreeOnNoiseInContainers) {
  ExpectAgreement(4, [](CJsonGenerator& generator) {
    const std::wstring noise = generator.Noise(generator.Below(12));
    return generator.Below(2) == 0 ? L"[" + noise + L"]" : L"{\"a\":" + noise + L"}";
  });
}

// What the tests above are worth: the texts must get somewhere.
TEST(JsonGeneratorTest, ReachesManyResultsOfBothSorts) {
  CJsonGenerator generator(2);
  int read = 0;
  std::set<int> failures;
  for (int count = 0; count < kTexts; ++count) {
    const std::wstring text = generator.DamagedValue(kDepth);
    const JsonReading reading = NaiveParseValue(text, static_cast<int>(text.size()));
    read += reading.result > 0 ? 1 : 0;
    if (reading.result <= 0) {
      failures.insert(reading.result);
    }
  }

  EXPECT_GT(read, kTexts / 4);
  EXPECT_LT(read, kTexts * 3 / 4);
  EXPECT_GT(failures.size(), 50U);
}

}  // namespace
}  // namespace nhupdate_test
