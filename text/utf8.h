#pragma once

// Text from files comes as UTF-8 and is used as UTF-16.

#include <string>

namespace nhupdate {

// Converts exactly `byte_count` bytes, which need no terminator and may contain NULs. Invalid
// sequences become U+FFFD; a count of zero or less gives an empty text.
[[nodiscard]] std::wstring Utf8ToWide(const char* bytes, int byte_count);

}  // namespace nhupdate
