#pragma once

namespace nimba_hub {

// The exit codes of the host, in both of its roles.
enum class HostEnd : int {
  kOk = 0,              // product: closed; helper: the new version has been started
  kNotUnderstood = 1,   // the command line
  kAlreadyRunning = 2,  // product: it is, or an update is; helper: an update is
  kRefused = 3,         // helper: the user doesn't consent; the product was left alone
  kNotStarted = 4,      // helper: the updater can't be started now; the product was left alone
  kNotUpdated = 5,      // helper: the update has failed, and the user knows
  kStillAtWork = 6,     // helper: doesn't wait any longer
};

}  // namespace nimba_hub
