#pragma once

// Turns wide texts into UTF-8, which GoogleTest can show as it is, and back.

#include <string>

namespace nhupdate_test {

[[nodiscard]] std::string ToUtf8(const std::wstring& text);
[[nodiscard]] std::wstring ToWide(const std::string& text);

}  // namespace nhupdate_test
