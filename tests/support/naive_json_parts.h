#pragma once

// The naive reader's parts (naive_json_reader.h) for values that hold no others. Each gets what is
// left of the text, up to the bound or the first NUL. Literal, Number, String and Quoted return how
// many units they have read and store what those say; 0 or less is a failure.

#include <string>
#include <string_view>

namespace nhupdate_test::naive {

using View = std::wstring_view;

[[nodiscard]] bool IsDecimal(wchar_t unit);

// The number of units of whitespace that the text begins with.
[[nodiscard]] int Whitespace(View text);

[[nodiscard]] View Rest(View text, int count);
[[nodiscard]] bool StartsWith(View text, wchar_t unit);

[[nodiscard]] int Literal(View text, std::string& value);
[[nodiscard]] int Number(View text, std::string& value);
[[nodiscard]] int String(View text, std::string& value);

// A key or a string: stores the text between the quotes, with its escapes replaced.
[[nodiscard]] int Quoted(View text, std::wstring& out);

}  // namespace nhupdate_test::naive
