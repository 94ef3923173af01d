#pragma once

// Wine is no Windows, and the tests know where it differs.

namespace nhupdate_test {

[[nodiscard]] bool IsWine();

}  // namespace nhupdate_test
