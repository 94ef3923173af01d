#pragma once

// Real numbers for std::from_chars where libc++ has none (before its release 20), so that the
// portable files can be built with it. Put in front of every file by the preset clang-host.

#include <charconv>

#ifdef _LIBCPP_VERSION
#if _LIBCPP_VERSION < 200000

#include <cmath>
#include <cstdlib>
#include <string>
#include <system_error>

namespace std {

// Only for what the JSON reader asks: decimal digits and one full stop, no sign and no exponent.
// These mean the same to strtod, in the language "C", in which a program starts.
inline from_chars_result from_chars(const char* first, const char* last, double& value,
                                    chars_format) {
  const string digits(first, last);
  char* end = nullptr;
  const double result = strtod(digits.c_str(), &end);
  if (end == digits.c_str()) {
    return {first, errc::invalid_argument};
  }
  const char* const behind = first + (end - digits.c_str());
  const bool is_lost = result == 0.0 && digits.find_first_of("123456789") != string::npos;
  if (isinf(result) || is_lost) {
    return {behind, errc::result_out_of_range};
  }
  value = result;
  return {behind, errc()};
}

}  // namespace std

#endif
#endif
