#pragma once

// Rights that the product needs later on, when it runs without elevation.

#include <string>

#include "log/log.h"

namespace nhupdate {

// Lets all users of the machine write to the updater's configuration and temporary folder in the
// base folder, and to the maker's folder in ProgramData; makes the latter two if need be. Starts
// the system's tool for each of them and doesn't wait for it; what can't be started is logged.
void GrantFolderAccess(const std::wstring& base_folder, const CLog& log);

}  // namespace nhupdate
