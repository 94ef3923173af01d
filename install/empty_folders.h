#pragma once

// Finding the folders that an update has left without a file.

#include <string>
#include <vector>

#include "log/log.h"

namespace nhupdate {

// Adds the sub-folders that hold no file at any depth to `found`, the deepest first. Returns true
// when the folder itself holds none, or can't be listed. A link counts as a file, and so does a
// folder that Windows takes for another one by its name (base/windows_path.h), unless there is
// nothing in that one.
[[nodiscard]] bool CollectEmptyFolders(const std::wstring& folder, std::vector<std::wstring>& found,
                                       const CLog& log);

}  // namespace nhupdate
