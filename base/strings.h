#pragma once

// The few text operations whose edge behaviour the rest of the program relies on; everything else
// is std::wstring itself.

#include <string>

namespace nhupdate {

// The first `count` characters: none for a negative count, all of them for a count beyond the end.
[[nodiscard]] std::wstring LeftPart(const std::wstring& text, int count);

// The characters from index `first` to the end; none if the index lies outside the text.
[[nodiscard]] std::wstring RestFrom(const std::wstring& text, int first);

// Replaces every occurrence of `old_text`, from left to right and never inside what was just put
// in. Returns the number of replacements. An empty `old_text` occurs nowhere.
int ReplaceAll(std::wstring& text, const std::wstring& old_text, const std::wstring& new_text);

// Compares without regard to the case of the letters A to Z; all other characters must be equal.
[[nodiscard]] bool EqualsIgnoringCase(const std::wstring& left, const std::wstring& right);

// True when `text` begins with `prefix`, compared as EqualsIgnoringCase does.
[[nodiscard]] bool StartsWithIgnoringCase(const std::wstring& text, const std::wstring& prefix);

}  // namespace nhupdate
