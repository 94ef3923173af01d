#pragma once

// Bringing the updater itself up to date before it does an update.

#include <string>

#include "install/folder_copy.h"
#include "log/log.h"

namespace nhupdate {

// Asks the updater in that folder for a newer one of itself and copies what it has fetched, now or
// at another time, over it. Returns true when nothing is left to be copied.
[[nodiscard]] bool RefreshUpdater(const std::wstring& updater_folder, CFolderCopy& copy,
                                  const CLog& log);

}  // namespace nhupdate
