#include "text/json_digits.h"

#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <system_error>

namespace nhupdate {

namespace {

// The value of a hexadecimal digit, or -1.
int HexadecimalDigit(wchar_t unit) {
  if (IsDigit(unit)) {
    return unit - L'0';
  }
  if (unit >= L'a' && unit <= L'f') {
    return unit - L'a' + 10;
  }
  if (unit >= L'A' && unit <= L'F') {
    return unit - L'A' + 10;
  }
  return -1;
}

}  // namespace

bool IsDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

void ScanHexadecimal(const wchar_t* digits, std::uint32_t& code) {
  if (HexadecimalDigit(digits[0]) < 0) {
    return;
  }
  code = 0;
  for (int index = 0; index < 4 && HexadecimalDigit(digits[index]) >= 0; ++index) {
    code = code * 16 + static_cast<std::uint32_t>(HexadecimalDigit(digits[index]));
  }
}

std::int64_t ToInteger(const std::string& digits) {
  std::int64_t integer = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), integer);
  return result.ec == std::errc::result_out_of_range ? std::numeric_limits<std::int64_t>::max()
                                                     : integer;
}

double ToReal(const std::string& digits) {
  constexpr char kNotZero[] = "123456789";
  // Further digits change nothing, but for whether there is anything else than 0 among them. With
  // all of them the conversion would take time in proportion to the square of their number.
  constexpr std::size_t kEnough = 800;
  const std::size_t first = digits.find_first_of(kNotZero);
  if (first == std::string::npos || digits.size() - first <= kEnough) {
    return std::strtod(digits.c_str(), nullptr);
  }
  const std::size_t end = first + kEnough;
  if (digits.find('.') >= end) {
    return std::numeric_limits<double>::infinity();
  }
  const bool is_more = digits.find_first_of(kNotZero, end) != std::string::npos;
  return std::strtod((digits.substr(0, end) + (is_more ? "1" : "")).c_str(), nullptr);
}

}  // namespace nhupdate
