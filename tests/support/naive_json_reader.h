#pragma once

// A second reader of the same JSON dialect, to compare the program's with. It is written for being
// plainly right: recursive, searching ahead again at every container, with the C library's number
// conversions. It shares no code with the program's reader.

#include <string_view>

#include "tests/support/json_reading.h"

namespace nhupdate_test {

[[nodiscard]] JsonReading NaiveParseValue(std::wstring_view text, int bound);
[[nodiscard]] JsonReading NaiveParseObject(std::wstring_view text, int bound);
[[nodiscard]] JsonReading NaiveParseArray(std::wstring_view text, int bound);
[[nodiscard]] JsonReading NaiveParseString(std::wstring_view text, int bound);
[[nodiscard]] JsonReading NaiveParseNumber(std::wstring_view text, int bound);
[[nodiscard]] JsonReading NaiveParseLiteral(std::wstring_view text, int bound);

}  // namespace nhupdate_test
