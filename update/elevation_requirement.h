#pragma once

// For work that can't be done without administrator rights.

#include "log/log.h"

namespace nhupdate {

// Returns `is_elevated`, and logs when it isn't true.
[[nodiscard]] bool RequireElevation(bool is_elevated, const CLog& log);

}  // namespace nhupdate
