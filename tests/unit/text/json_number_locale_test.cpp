#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "text/json_reader.h"

namespace nhupdate_test {
namespace {

// The run-time library's, of which every DLL in the process may have the same one.
class GermanNumbers {
 public:
  GermanNumbers() { std::setlocale(LC_NUMERIC, "German"); }
  ~GermanNumbers() { std::setlocale(LC_NUMERIC, "C"); }
  GermanNumbers(const GermanNumbers&) = delete;
  GermanNumbers& operator=(const GermanNumbers&) = delete;
};

TEST(ParseNumberTest, KnowsTheFullStopWhateverTheLocaleHasInItsPlace) {
  const GermanNumbers german;
  ASSERT_STREQ(std::localeconv()->decimal_point, ",");

  nhupdate::JsonValue value;
  EXPECT_EQ(nhupdate::ParseNumber(value, L"-12.75,", 7), 6);

  ASSERT_NE(value.AsReal(), nullptr);
  EXPECT_EQ(*value.AsReal(), -12.75);
}

}  // namespace
}  // namespace nhupdate_test
