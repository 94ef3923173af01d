#pragma once

// The updater's configuration, which is deleted after a failed stage, so that its next run starts
// afresh.

#include <string>

#include "log/log.h"

namespace nhupdate {

// Returns whether there was one. Whether it could be deleted only stands in the log.
[[nodiscard]] bool DeleteUpdaterConfig(const std::wstring& updater_folder, const CLog& log);

}  // namespace nhupdate
