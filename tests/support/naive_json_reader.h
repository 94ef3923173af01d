#pragma once

// A second reader of the same JSON dialect, with which the program's is compared. It is written so
// that it is easily seen to be right, not to be fast: recursive, with a search for the end of every
// container and the C library's conversions. It shares no code with the program's reader.

#include <string>
#include <string_view>

#include "tests/support/json_reading.h"

namespace nhupdate_test {

[[nodiscard]] JsonReading NaiveParseValue(std::wstring_view text, int bound);

// Lets all readers, of values and of their parts, read the text up to the bound. Empty when each
// gives exactly the result and the value that the naive one gives; else the first disagreement.
[[nodiscard]] std::string DisagreementOn(std::wstring_view text, int bound);

}  // namespace nhupdate_test
