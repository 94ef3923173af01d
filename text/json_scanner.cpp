#include "text/json_scanner.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "text/json_digits.h"

namespace nhupdate {

namespace {

constexpr wchar_t kQuote = L'"';
constexpr wchar_t kBackslash = L'\\';
constexpr int kUnicodeEscapeUnits = 6;

enum class Scalar { kNone, kString, kNumber, kLiteral };

Scalar ScalarBegunBy(wchar_t unit) {
  switch (unit) {
    case kQuote:
      return Scalar::kString;
    case L'+':
    case L'-':
      return Scalar::kNumber;
    case L'F':
    case L'N':
    case L'T':
    case L'f':
    case L'n':
    case L't':
      return Scalar::kLiteral;
    default:
      return IsDigit(unit) ? Scalar::kNumber : Scalar::kNone;
  }
}

int Length(const wchar_t* text, int bound) {
  int length = 0;
  while (length < bound && text[length] != L'\0') {
    ++length;
  }
  return length;
}

}  // namespace

CJsonScanner::CJsonScanner(const wchar_t* text, int bound)
    : text_(text), end_(Length(text, bound)) {}

bool CJsonScanner::HasAhead(wchar_t closing_unit, int position) {
  int& last = closing_unit == kQuote ? last_quote_
              : closing_unit == L']' ? last_square_bracket_
                                     : last_curly_bracket_;
  if (last < 0) {
    last = end_ - 1;
    while (last >= position && text_[last] != closing_unit) {
      --last;
    }
  }
  return last >= position;
}

int CJsonScanner::ScanString(int position, std::wstring& out) {
  if (!HasAhead(kQuote, position)) {
    return -1;
  }
  std::uint32_t code = 0;
  int next = position + 1;
  for (;;) {
    const int first = next;
    while (next < end_ && text_[next] != kQuote && text_[next] != kBackslash) {
      ++next;
    }
    out.append(text_ + first, static_cast<std::size_t>(next - first));
    if (next == end_) {
      return next - position;
    }
    if (text_[next] == kQuote) {
      return next + 1 - position;
    }
    const int consumed = ScanEscape(next, code, out);
    if (consumed > end_ - next) {
      return -(next - position + consumed);
    }
    next += consumed;
  }
}

// Appends what the escape stands for and returns its length, which is more than what is left of
// the text when the escape is cut off behind its backslash; then nothing is appended.
int CJsonScanner::ScanEscape(int position, std::uint32_t& code, std::wstring& out) const {
  constexpr int kShortEscapeUnits = 2;
  const int remaining = end_ - position;
  if (remaining < kShortEscapeUnits) {
    return kShortEscapeUnits;
  }
  const wchar_t* escape = text_ + position;
  switch (escape[1]) {
    case kQuote:
    case L'/':
      out.push_back(escape[1]);
      return kShortEscapeUnits;
    case L'n':
      out.push_back(L'\n');
      return kShortEscapeUnits;
    case L'r':
      out.push_back(L'\r');
      return kShortEscapeUnits;
    case L't':
      out.push_back(L'\t');
      return kShortEscapeUnits;
    case L'u':
      if (remaining < kUnicodeEscapeUnits) {
        out.append(escape, static_cast<std::size_t>(remaining));
        return remaining;
      }
      ScanHexadecimal(escape + 2, code);
      out.push_back(static_cast<wchar_t>(code));
      return kUnicodeEscapeUnits;
    default:
      // The unit behind the backslash is dropped, also when it is a second backslash.
      out.push_back(kBackslash);
      return kShortEscapeUnits;
  }
}

int CJsonScanner::ParseString(JsonValue& value, int position) {
  std::wstring text;
  const int consumed = ScanString(position, text);
  if (consumed > 0) {
    value = JsonValue(std::move(text));
  }
  return consumed;
}

int CJsonScanner::ParseNumber(JsonValue& value, int position) const {
  const wchar_t sign = UnitAt(position);
  const bool has_sign = sign == L'+' || sign == L'-';
  const int first = has_sign ? position + 1 : position;

  bool has_full_stop = false;
  int next = first;
  for (; next < end_ && (IsDigit(text_[next]) || text_[next] == L'.'); ++next) {
    if (text_[next] == L'.') {
      if (has_full_stop) {
        return -1;
      }
      has_full_stop = true;
    }
  }
  if (next == end_) {
    return -1;  // a number needs something behind it
  }

  const std::wstring_view digits(text_ + first, static_cast<std::size_t>(next - first));
  if (has_full_stop) {
    const double real = ToReal(digits);
    value = JsonValue(sign == L'-' ? real * -1.0 : real);
  } else {
    const std::int64_t integer = ToInteger(digits);
    value = JsonValue(sign == L'-' ? -integer : integer);
  }
  return next - position;
}

int CJsonScanner::ParseLiteral(JsonValue& value, int position) const {
  if (IsLiteral(L"true", position)) {
    value = JsonValue(true);
    return 4;
  }
  if (IsLiteral(L"false", position)) {
    value = JsonValue(false);
    return 5;
  }
  if (IsLiteral(L"null", position)) {
    value = JsonValue();
    return 4;
  }
  return -1;
}

// Whether the name, which is in lower case, stands at the position in any letter case.
bool CJsonScanner::IsLiteral(std::wstring_view name, int position) const {
  constexpr wchar_t kToUpperCase = L'a' - L'A';
  return name.size() <= static_cast<std::size_t>(end_ - position) &&
         std::equal(name.begin(), name.end(), text_ + position, [](wchar_t letter, wchar_t unit) {
           return unit == letter || unit == letter - kToUpperCase;
         });
}

bool CJsonScanner::BeginsScalar(int position) const {
  return ScalarBegunBy(UnitAt(position)) != Scalar::kNone;
}

int CJsonScanner::ParseScalar(JsonValue& value, int position) {
  switch (ScalarBegunBy(UnitAt(position))) {
    case Scalar::kString:
      return ParseString(value, position);
    case Scalar::kNumber:
      return ParseNumber(value, position);
    case Scalar::kLiteral:
      return ParseLiteral(value, position);
    case Scalar::kNone:
      break;
  }
  return -1;
}

}  // namespace nhupdate
