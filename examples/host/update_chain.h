#pragma once

// One try of an update: a mode of the updater, started elevated, and everything that follows from
// it.

#include <chrono>
#include <filesystem>

#include "status_window.h"
#include "update_log.h"

namespace nimba_hub {

enum class Progress {
  kRefused,      // the user doesn't consent; nothing was started
  kNotStarted,   // Windows can't start it
  kStillAtWork,  // it has been started, and nobody waits for it any longer
  kEnded,
};

struct Try {
  Progress progress = Progress::kNotStarted;
  StageEnd end;  // when it has ended
};

// Starts the mode, asks the product to close as soon as the user has consented, and waits until no
// process of the updater is left. Waits no longer when the time is over or the window is closed; it
// ends nothing, so the update goes on then.
[[nodiscard]] Try RunUpdate(Mode mode, const std::filesystem::path& product_folder,
                            CStatusWindow& window, std::chrono::seconds longest_wait);

}  // namespace nimba_hub
