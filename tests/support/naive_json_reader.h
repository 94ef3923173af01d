#pragma once

// A second reader of the same JSON dialect, to compare the program's with. It is written for being
// plainly right: recursive, searching ahead again at every container, with the C library's number
// conversions. It shares no code with the program's reader.

#include <string>
#include <string_view>

#include "tests/support/json_reading.h"

namespace nhupdate_test {

[[nodiscard]] JsonReading NaiveParseValue(std::wstring_view text, int bound);

// Lets all readers, of values and of their parts, read the text up to the bound. Empty when each
// gives exactly the result and the value that the naive one gives; else what one of them says.
[[nodiscard]] std::string DisagreementOn(std::wstring_view text, int bound);

}  // namespace nhupdate_test
