#pragma once

// The product: asks now and then whether there is something new and offers it to the user.

#include "host_end.h"
#include "settings.h"

namespace nimba_hub {

// Ends when its window is closed, by the user or for an update.
[[nodiscard]] HostEnd RunProduct(const Settings& settings);

}  // namespace nimba_hub
