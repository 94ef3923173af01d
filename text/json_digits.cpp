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

std::string Narrow(std::wstring_view digits) {
  std::string narrow;
  narrow.reserve(digits.size());
  for (const wchar_t unit : digits) {
    narrow.push_back(static_cast<char>(unit));
  }
  return narrow;
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
  // Further digits change nothing, but for whether there is anything else than 0 among them. With
  // all of them the conversion would take time in proportion to the square of their number.
  constexpr std::ptrdiff_t kEnough = 800;
  const auto is_more_than_zero = [](wchar_t unit) { return IsDigit(unit) && unit != L'0'; };
  const auto first = std::find_if(digits.begin(), digits.end(), is_more_than_zero);
  if (digits.end() - first <= kEnough) {
    return std::strtod(Narrow(digits).c_str(), nullptr);
  }
  const auto end = first + kEnough;
  if (std::find(digits.begin(), end, L'.') == end) {
    return std::numeric_limits<double>::infinity();
  }
  const bool is_more = std::any_of(end, digits.end(), is_more_than_zero);
  const std::wstring_view enough(digits.data(), static_cast<std::size_t>(end - digits.begin()));
  return std::strtod((Narrow(enough) + (is_more ? "1" : "")).c_str(), nullptr);
}

}  // namespace nhupdate
