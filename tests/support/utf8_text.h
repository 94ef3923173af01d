#pragma once

// Expected texts stand as UTF-8 in the tests, which GoogleTest can show.

#include <string>

namespace nhupdate_test {

[[nodiscard]] std::string ToUtf8(const std::wstring& text);
[[nodiscard]] std::wstring ToWide(const std::string& text);

}  // namespace nhupdate_test
