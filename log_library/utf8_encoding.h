#pragma once

// From UTF-16 to UTF-8, one character at a time.

#include <cstddef>
#include <string>
#include <string_view>

namespace nhupdate {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// The character that begins at `position`, which is moved behind it. Half of a surrogate pair
// without the other is the replacement character.
[[nodiscard]] char32_t NextCharacter(std::wstring_view text, std::size_t& position);

// `character` is one that UTF-8 can hold: no surrogate, nothing above U+10FFFF.
void AppendUtf8(std::string& bytes, char32_t character);

}  // namespace nhupdate
