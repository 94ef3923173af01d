#pragma once

// Whether the tests run under Wine, which differs from Windows in places that some tests know of.

#include <string>

namespace nhupdate_test {

[[nodiscard]] bool IsWine();

// Such as "8.0"; empty on Windows.
[[nodiscard]] std::string WineVersion();

}  // namespace nhupdate_test
