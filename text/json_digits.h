#pragma once

// From the digits of a JSON text to numbers. Only ASCII digits are digits.

#include <cstdint>
#include <string_view>

namespace nhupdate {

[[nodiscard]] inline bool IsDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

// Reads the hexadecimal digits that begin at `digits`, four at the most, as one code. Without a
// single one the code stays what it was.
void ScanHexadecimal(const wchar_t* digits, std::uint32_t& code);

// `digits` holds nothing but decimal digits, perhaps none, which is 0. Too large a number becomes
// the largest one.
[[nodiscard]] std::int64_t ToInteger(std::wstring_view digits);

// `digits` holds decimal digits and one full stop. Without a digit the result is 0; too large a
// number is infinite.
[[nodiscard]] double ToReal(std::wstring_view digits);

}  // namespace nhupdate
