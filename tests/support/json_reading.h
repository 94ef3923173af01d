#pragma once

// What a reader of JSON makes of a text: its result and the value, which can be compared at once.

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "text/json_value.h"

namespace nhupdate_test {

// Stands for the value when the reader has left it alone.
inline constexpr char kUntouched[] = "untouched";

struct JsonReading {
  int result = 0;
  std::string value = kUntouched;  // as in json_description.h

  bool operator==(const JsonReading&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const JsonReading& reading);

using JsonReader = int (*)(nhupdate::JsonValue& value, const wchar_t* text, int bound);

// A text in a block of memory that ends at the bound, or behind the text's terminator if that comes
// first, so that the sanitizers notice a reader that goes further.
class CReadableText {
 public:
  CReadableText(std::wstring_view text, int bound);

  [[nodiscard]] JsonReading Read(JsonReader reader) const;
  // The same for ScanString.
  [[nodiscard]] JsonReading ScanString() const;

 private:
  std::vector<wchar_t> units_;
  int bound_;
};

[[nodiscard]] JsonReading ReadJson(JsonReader reader, std::wstring_view text, int bound);

// With the bound at the end of the text.
[[nodiscard]] JsonReading ReadJson(JsonReader reader, std::wstring_view text);

// The text up to the bound; the whole text if that is shorter, nothing if the bound is negative.
[[nodiscard]] std::wstring_view WithinBound(std::wstring_view text, int bound);

}  // namespace nhupdate_test
