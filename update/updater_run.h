#pragma once

// The two things the updater is asked for, and what its exit code means for each of them.

namespace nhupdate {

enum class CheckOutcome {
  kUpdaterMissing,
  kFound,
  kNothingFound,
  kFailed,  // the updater could not be launched, reported an error or can't be asked for its code
};

enum class UpdateOutcome {
  kUpdaterMissing,
  kNotLaunched,
  kFailed,
  kDone,  // also when the exit code can't be read
};

}  // namespace nhupdate
