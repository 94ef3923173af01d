#pragma once

// The text under the JSON reader: where it ends, which closing units still lie ahead, and the
// values that hold no others. Positions count units from the first one of the text.

#include <cstdint>
#include <string>
#include <string_view>

#include "text/json_value.h"

namespace nhupdate {

class CJsonScanner {
 public:
  CJsonScanner(const wchar_t* text, int bound);

  // The unit at the position; NUL at the end.
  [[nodiscard]] wchar_t UnitAt(int position) const {
    return position < end_ ? text_[position] : L'\0';
  }

  // True when the closing unit (a quote, "]" or "}") stands at the position or behind it. The text
  // is searched once for each of them, so a reader gives up when there is none.
  [[nodiscard]] bool HasAhead(wchar_t closing_unit, int position);

  // The first position from `position` on that holds no whitespace.
  [[nodiscard]] int SkipWhitespace(int position) const {
    while (position < end_ && text_[position] <= L' ') {
      ++position;
    }
    return position;
  }

  // Each reads what begins at the position and returns the number of units consumed or a negative
  // number. The readers of values fill `value` only when they succeed; ScanString appends to `out`
  // what it has read, also when it fails.
  [[nodiscard]] int ScanString(int position, std::wstring& out);
  [[nodiscard]] int ParseString(JsonValue& value, int position);
  [[nodiscard]] int ParseNumber(JsonValue& value, int position) const;
  [[nodiscard]] int ParseLiteral(JsonValue& value, int position) const;

  // Whether the unit at the position can begin one of these values.
  [[nodiscard]] bool BeginsScalar(int position) const;

  // Reads whichever of these values begins at the position; -1 where none does.
  [[nodiscard]] int ParseScalar(JsonValue& value, int position);

 private:
  [[nodiscard]] bool IsLiteral(std::wstring_view name, int position) const;
  int ScanEscape(int position, std::uint32_t& code, std::wstring& out) const;

  const wchar_t* text_;
  int end_;  // one behind the last unit
  // Negative until they are asked for.
  int last_quote_ = -1;
  int last_square_bracket_ = -1;
  int last_curly_bracket_ = -1;
};

}  // namespace nhupdate
