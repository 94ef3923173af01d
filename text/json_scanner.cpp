#include "text/json_scanner.h"

#include <cstddef>
#include <utility>

#include "base/strings.h"
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

}  // namespace

CJsonScanner::CJsonScanner(const wchar_t* text, int bound) : text_(text) {
  for (; end_ < bound && text[end_] != L'\0'; ++end_) {
    switch (text[end_]) {
      case kQuote:
        last_quote_ = end_;
        break;
      case L']':
        last_square_bracket_ = end_;
        break;
      case L'}':
        last_curly_bracket_ = end_;
        break;
      default:
        break;
    }
  }
}

bool CJsonScanner::HasAhead(wchar_t closing_unit, int position) const {
  const int last = closing_unit == kQuote ? last_quote_
                   : closing_unit == L']' ? last_square_bracket_
                                          : last_curly_bracket_;
  return last >= position;
}

int CJsonScanner::SkipWhitespace(int position) const {
  while (position < end_ && text_[position] <= L' ') {
    ++position;
  }
  return position;
}

int CJsonScanner::ScanString(int position, std::wstring& out) const {
  if (!HasAhead(kQuote, position)) {
    return -1;
  }
  std::wstring text;
  std::uint32_t code = 0;
  int next = position + 1;
  bool is_closed = false;
  while (next < end_ && !is_closed) {
    const wchar_t unit = text_[next];
    if (unit == kBackslash) {
      const int consumed = ScanEscape(next, code, text);
      if (consumed > end_ - next) {
        return -(next - position + consumed);
      }
      next += consumed;
    } else {
      if (unit == kQuote) {
        is_closed = true;
      } else {
        text.push_back(unit);
      }
      ++next;
    }
  }
  out = std::move(text);
  return next - position;
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

int CJsonScanner::ParseString(JsonValue& value, int position) const {
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

  std::string digits;
  bool has_full_stop = false;
  int next = first;
  for (; next < end_ && (IsDigit(text_[next]) || text_[next] == L'.'); ++next) {
    if (text_[next] == L'.') {
      if (has_full_stop) {
        return -1;
      }
      has_full_stop = true;
    }
    digits.push_back(static_cast<char>(text_[next]));
  }
  if (next == end_) {
    return -1;  // a number needs something behind it
  }

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
  constexpr int kShortestLiteralUnits = 4;
  if (end_ - position < kShortestLiteralUnits) {
    return -1;
  }
  const wchar_t initial = text_[position];
  const int units = initial == L'F' || initial == L'f' ? 5 : kShortestLiteralUnits;
  if (end_ - position < units) {
    return -1;
  }
  const std::wstring literal(text_ + position, static_cast<std::size_t>(units));
  if (EqualsIgnoringCase(literal, L"true")) {
    value = JsonValue(true);
  } else if (EqualsIgnoringCase(literal, L"false")) {
    value = JsonValue(false);
  } else if (EqualsIgnoringCase(literal, L"null")) {
    value = JsonValue();
  } else {
    return -1;
  }
  return units;
}

bool CJsonScanner::BeginsScalar(int position) const {
  return ScalarBegunBy(UnitAt(position)) != Scalar::kNone;
}

int CJsonScanner::ParseScalar(JsonValue& value, int position) const {
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
