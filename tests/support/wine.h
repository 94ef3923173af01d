#pragma once

// Wine is no Windows, and the tests know where it differs.

#include <string>

namespace nhupdate_test {

[[nodiscard]] bool IsWine();

// Such as "8.0"; empty on Windows.
[[nodiscard]] std::string WineVersion();

}  // namespace nhupdate_test
