#pragma once

// The helper: a copy of the host outside of the product's folder, where it keeps nothing from being
// replaced. It sees an update through to the end and starts the product again.

#include <filesystem>

#include "host_end.h"
#include "owned_handle.h"
#include "settings.h"

namespace nimba_hub {

// Copies the running program to the user's folder for temporary files and starts it there. None
// when that can't be done, as when another helper is running.
[[nodiscard]] OwnedHandle StartHelper(const Settings& settings);

// The helper itself. Ends when the product has been started again, or needn't be.
[[nodiscard]] HostEnd RunHelper(const Settings& settings);

}  // namespace nimba_hub
