#include "text/json_digits.h"

#include <algorithm>
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

// How many of the digits from `first` on stand before the full stop. When that comes earlier it is
// minus the number of those between the two.
std::int64_t DigitsBeforeTheFullStop(const std::string& digits, std::size_t first) {
  const std::size_t full_stop = digits.find('.');
  return full_stop > first ? static_cast<std::int64_t>(full_stop - first)
                           : -static_cast<std::int64_t>(first - full_stop - 1);
}

// The value of the digits times that power of ten. Without a full stop: what the conversion takes
// for one is a matter of the locale, which any DLL in the process can set.
double ConvertWhole(const std::string& digits, std::int64_t exponent) {
  const std::string power = "e" + std::to_string(exponent);
  const double real = std::strtod((digits + power).c_str(), nullptr);
  // One run-time library gives this for smaller values too: where what lies exactly halfway is
  // rounded up to a power of two. It is right about what is a trifle larger than halfway.
  if (real == std::numeric_limits<double>::min()) {
    const std::string larger = digits + "1e" + std::to_string(exponent - 1);
    return std::min(real, std::strtod(larger.c_str(), nullptr));
  }
  return real;
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
  const std::size_t first = digits.find_first_of(kNotZero);
  if (first == std::string::npos) {
    return 0.0;
  }
  std::string text = digits.substr(first);
  std::erase(text, '.');
  const std::int64_t exponent = DigitsBeforeTheFullStop(digits, first);

  // Further digits change nothing, but for whether there is anything else than 0 among them. With
  // all of them the conversion would take time in proportion to the square of their number.
  constexpr std::size_t kEnough = 800;
  if (text.size() > kEnough) {
    const bool is_more = text.find_first_of(kNotZero, kEnough) != std::string::npos;
    text.resize(kEnough);
    text += is_more ? "1" : "";
  }
  return ConvertWhole(text, exponent - static_cast<std::int64_t>(text.size()));
}

}  // namespace nhupdate
