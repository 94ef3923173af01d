#pragma once

// What a reader of JSON text makes of a text: its result and the value, in one comparable piece.

#include <ostream>
#include <string>
#include <string_view>

#include "text/json_value.h"

namespace nhupdate_test {

// The value of a reading whose reader left the value alone.
inline constexpr char kUntouched[] = "untouched";

struct JsonReading {
  int result = 0;
  std::string value = kUntouched;  // as in json_description.h

  bool operator==(const JsonReading&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const JsonReading& reading);

using JsonReader = int (*)(nhupdate::JsonValue& value, const wchar_t* text, int bound);

// Lets the reader read the text. In memory there is nothing behind the bound and nothing behind the
// text's terminator, so that the sanitizers notice a reader that goes further.
[[nodiscard]] JsonReading ReadJson(JsonReader reader, std::wstring_view text, int bound);

// With the bound at the end of the text.
[[nodiscard]] JsonReading ReadJson(JsonReader reader, std::wstring_view text);

// The same for ScanString.
[[nodiscard]] JsonReading ScanJsonString(std::wstring_view text, int bound);

// The units that a reader with this bound may look at, without anything behind them.
[[nodiscard]] std::wstring_view WithinBound(std::wstring_view text, int bound);

}  // namespace nhupdate_test
