#pragma once

#include <string>

#include "tests/end_to_end/support/installed_hub.h"

namespace nhupdate_test {

// What DescribeProductKeys says after the product was registered, today.
[[nodiscard]] std::string ExpectedProductKeys(const CInstalledHub& hub);

}  // namespace nhupdate_test
