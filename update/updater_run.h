#pragma once

// The two things the updater is asked for, and what its exit code means for each of them.

#include <string>

#include "base/format.h"
#include "log/log.h"

namespace nhupdate {

struct ChildLaunch;

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

struct CheckMessages {
  FormatString<> found;
  FormatString<> nothing_found;
};

// Asks the updater in that folder whether there is something new, and logs its answer.
[[nodiscard]] CheckOutcome CheckWithUpdater(const ChildLaunch& launch,
                                            const std::wstring& updater_folder,
                                            const CheckMessages& messages, const CLog& log);

// Lets the updater in that folder do an update. After a failure the handle of its process stays
// open until this process ends.
[[nodiscard]] UpdateOutcome UpdateWithUpdater(const ChildLaunch& launch,
                                              const std::wstring& updater_folder, const CLog& log);

}  // namespace nhupdate
