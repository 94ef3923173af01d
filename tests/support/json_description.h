#pragma once

// A JSON value as one line of text, which tells every two different values apart:
//
//   null   true   -7   real 0.5   "a\\b\u00E9"   [1,[]]   {"a":null,"b":"x"}

#include <string>
#include <string_view>

#include "text/json_value.h"

namespace nhupdate_test {

[[nodiscard]] std::string DescribeReal(double real);

// In quotes; a quote and a backslash behind a backslash, units outside printable ASCII as \uXXXX.
[[nodiscard]] std::string DescribeString(std::wstring_view string);

// Recursive: not for values that are nested too deep for the stack.
[[nodiscard]] std::string Describe(const nhupdate::JsonValue& value);

}  // namespace nhupdate_test
