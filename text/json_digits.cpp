#include "text/json_digits.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <string>

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
std::int64_t DigitsBeforeTheFullStop(std::wstring_view digits, std::size_t first) {
  const std::size_t full_stop = digits.find(L'.');
  return full_stop > first ? static_cast<std::int64_t>(full_stop - first)
                           : -static_cast<std::int64_t>(first - full_stop - 1);
}

// The value of the digits times that power of ten. Without a full stop: what the conversion takes
// for one is a matter of the locale, which any DLL in the process can set.
double ConvertWhole(const std::string& digits, std::int64_t exponent) {
  const std::string text = digits + 'e' + std::to_string(exponent);
  const double real = std::strtod(text.c_str(), nullptr);
  // One run-time library gives this for smaller values too: where what lies exactly halfway is
  // rounded up to a power of two. It is right about what is a trifle larger than halfway.
  if (real == std::numeric_limits<double>::min()) {
    const std::string larger = digits + "1e" + std::to_string(exponent - 1);
    return std::min(real, std::strtod(larger.c_str(), nullptr));
  }
  return real;
}

}  // namespace

void ScanHexadecimal(const wchar_t* digits, std::uint32_t& code) {
  if (HexadecimalDigit(digits[0]) < 0) {
    return;
  }
  code = 0;
  for (int index = 0; index < 4 && HexadecimalDigit(digits[index]) >= 0; ++index) {
    code = code * 16 + static_cast<std::uint32_t>(HexadecimalDigit(digits[index]));
  }
}

std::int64_t ToInteger(std::wstring_view digits) {
  constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
  std::int64_t integer = 0;
  for (const wchar_t unit : digits) {
    const std::int64_t digit = unit - L'0';
    if (integer > kLargest / 10 || (integer == kLargest / 10 && digit > kLargest % 10)) {
      return kLargest;
    }
    integer = integer * 10 + digit;
  }
  return integer;
}

double ToReal(std::wstring_view digits) {
  const auto is_more_than_zero = [](wchar_t unit) { return unit != L'0' && unit != L'.'; };
  const auto first = std::find_if(digits.begin(), digits.end(), is_more_than_zero);
  if (first == digits.end()) {
    return 0.0;
  }

  // Further digits change nothing, but for whether there is anything else than 0 among them. With
  // all of them the conversion would take time in proportion to the square of their number.
  constexpr std::size_t kEnough = 800;
  std::string text;
  auto next = first;
  for (; next != digits.end() && text.size() < kEnough; ++next) {
    if (*next != L'.') {
      text.push_back(static_cast<char>(*next));
    }
  }
  text += std::any_of(next, digits.end(), is_more_than_zero) ? "1" : "";
  const auto leading = static_cast<std::size_t>(first - digits.begin());
  return ConvertWhole(
      text, DigitsBeforeTheFullStop(digits, leading) - static_cast<std::int64_t>(text.size()));
}

}  // namespace nhupdate
