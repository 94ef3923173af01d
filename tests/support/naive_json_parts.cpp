#include "tests/support/naive_json_parts.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>

#include "tests/support/json_description.h"

namespace nhupdate_test::naive {

namespace {

bool IsHexadecimal(wchar_t unit) {
  return IsDecimal(unit) || (unit >= L'a' && unit <= L'f') || (unit >= L'A' && unit <= L'F');
}

}  // namespace

bool IsDecimal(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

int Whitespace(View text) {
  int count = 0;
  for (const wchar_t unit : text) {
    if (unit > 32) {
      break;
    }
    ++count;
  }
  return count;
}

View Rest(View text, int count) {
  return text.substr(static_cast<std::size_t>(count));
}

bool StartsWith(View text, wchar_t unit) {
  return !text.empty() && text.front() == unit;
}

int Literal(View text, std::string& value) {
  constexpr int kToCapital = 'A' - 'a';
  for (const std::string name : {"true", "false", "null"}) {
    const View beginning = text.substr(0, name.size());
    if (std::equal(name.begin(), name.end(), beginning.begin(), beginning.end(),
                   [](char letter, wchar_t unit) {
                     return unit == letter || unit == letter + kToCapital;
                   })) {
      value = name;
      return static_cast<int>(name.size());
    }
  }
  return -1;
}

int Number(View text, std::string& value) {
  const bool is_negative = StartsWith(text, L'-');
  const int sign_units = is_negative || StartsWith(text, L'+') ? 1 : 0;
  const View unsigned_text = Rest(text, sign_units);

  std::string run;
  for (const wchar_t unit : unsigned_text) {
    if (!IsDecimal(unit) && unit != L'.') {
      break;
    }
    run += static_cast<char>(unit);
  }
  const std::size_t full_stop = run.find('.');
  if (full_stop != std::string::npos && run.find('.', full_stop + 1) != std::string::npos) {
    return -1;
  }
  if (run.size() == unsigned_text.size()) {
    return -1;
  }

  if (full_stop != std::string::npos) {
    const double real = std::strtod(run.c_str(), nullptr);
    value = DescribeReal(is_negative ? real * -1.0 : real);
  } else {
    const std::int64_t integer = std::strtoll(run.c_str(), nullptr, 10);
    value = std::to_string(is_negative ? -integer : integer);
  }
  return static_cast<int>(run.size()) + sign_units;
}

int Quoted(View text, std::wstring& out) {
  if (text.find(L'"') == View::npos) {
    return -1;
  }
  static const std::map<wchar_t, wchar_t> two_unit_escapes = {
      {L'"', L'"'}, {L'n', L'\n'}, {L'r', L'\r'}, {L't', L'\t'}, {L'/', L'/'}};
  std::wstring scanned;
  unsigned long variable = 0;
  int consumed = 1;
  bool is_closed = false;
  while (!Rest(text, consumed).empty() && !is_closed) {
    const View rest = Rest(text, consumed);
    if (rest[0] == L'"') {
      is_closed = true;
      consumed += 1;
    } else if (rest[0] != L'\\') {
      scanned += rest[0];
      consumed += 1;
    } else if (rest.size() == 1) {
      return -(consumed + 2);
    } else if (rest[1] == L'u' && rest.size() < 6) {
      scanned += rest;
      consumed += static_cast<int>(rest.size());
    } else if (rest[1] == L'u') {
      std::string digits;
      for (std::size_t index = 2; index < 6 && IsHexadecimal(rest[index]); ++index) {
        digits += static_cast<char>(rest[index]);
      }
      if (!digits.empty()) {
        variable = std::strtoul(digits.c_str(), nullptr, 16);
      }
      scanned += static_cast<wchar_t>(variable & 0xFFFF);
      consumed += 6;
    } else {
      const auto escape = two_unit_escapes.find(rest[1]);
      scanned += escape == two_unit_escapes.end() ? L'\\' : escape->second;
      consumed += 2;
    }
  }
  out = scanned;
  return consumed;
}

int String(View text, std::string& value) {
  std::wstring scanned;
  const int result = Quoted(text, scanned);
  if (result > 0) {
    value = DescribeString(scanned);
  }
  return result;
}

}  // namespace nhupdate_test::naive
