#pragma once

// The updater's configuration, which is deleted after a failed stage, so that its next run starts
// afresh.

#include "base/product_folders.h"
#include "log/log.h"

namespace nhupdate {

// Which copy of this program is running, from which follows where the updater lies.
enum class RunningCopy { kInstalled, kStaged };

// Returns whether there was one. Whether it could be deleted only stands in the log. Without a base
// folder nothing is looked for.
[[nodiscard]] bool DeleteUpdaterConfig(const ProductFolders& folders, RunningCopy copy,
                                       const CLog& log);

}  // namespace nhupdate
