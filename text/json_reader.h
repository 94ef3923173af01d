#pragma once

// A small, lenient reader of JSON text in UTF-16, one unit per wchar_t, made for the string files.
// Commas are optional, literals may be in any letter case, a string may run to the end of the text
// without its closing quote, and the unit in the place of a key's opening quote is never looked at.
//
// Every reader takes the value to fill, the first unit to read and the number of units that may be
// read. A NUL within that bound ends the text. The result is the number of units consumed, or
// negative: -1 or minus the number of units examined. After a failure the value is as it was.
//
// The cost is linear in the text and independent of how deep it is nested.

#include <string>

#include "text/json_value.h"

namespace nhupdate {

// Reads one value of any kind, with whitespace (all units from 1 to 32) before it. Such whitespace
// is added to the result even when the value itself fails, so that a failure smaller in magnitude
// than the whitespace yields a positive result: look at the value's kind, not at the number.
[[nodiscard]] int ParseValue(JsonValue& value, const wchar_t* text, int bound);

// Readers of one kind each, with the text at the value's first unit.
[[nodiscard]] int ParseObject(JsonValue& value, const wchar_t* text, int bound);
[[nodiscard]] int ParseArray(JsonValue& value, const wchar_t* text, int bound);
[[nodiscard]] int ParseString(JsonValue& value, const wchar_t* text, int bound);
[[nodiscard]] int ParseNumber(JsonValue& value, const wchar_t* text, int bound);
[[nodiscard]] int ParseLiteral(JsonValue& value, const wchar_t* text, int bound);

// Reads a quoted string into `out`, which a failure leaves alone. The first unit is taken for the
// opening quote whatever it is; there only has to be some quote within the bound.
[[nodiscard]] int ScanString(const wchar_t* text, int bound, std::wstring& out);

// Releases the payload and everything beneath it, and makes the value Null.
void FreeValue(JsonValue& value);

}  // namespace nhupdate
