#pragma once

// Tables of texts and what a reader makes of them.

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>

#include "tests/support/json_description.h"
#include "tests/support/json_reading.h"
#include "text/json_reader.h"

namespace nhupdate_test {

struct JsonCase {
  std::wstring_view text;
  int result = 0;
  std::string value = kUntouched;
};

struct BoundedJsonCase {
  std::wstring_view text;
  int bound = 0;
  int result = 0;
  std::string value = kUntouched;
};

inline void ExpectReadings(JsonReader reader, std::initializer_list<JsonCase> cases) {
  for (const JsonCase& each : cases) {
    EXPECT_EQ(ReadJson(reader, each.text), (JsonReading{each.result, each.value}))
        << DescribeString(each.text);
  }
}

inline void ExpectReadingsWithin(JsonReader reader, std::initializer_list<BoundedJsonCase> cases) {
  for (const BoundedJsonCase& each : cases) {
    EXPECT_EQ(ReadJson(reader, each.text, each.bound), (JsonReading{each.result, each.value}))
        << DescribeString(each.text) << " with the bound " << each.bound;
  }
}

}  // namespace nhupdate_test
