#pragma once

// Rights that the product needs later on, when it runs without elevation.

#include "base/product_folders.h"
#include "log/log.h"

namespace nhupdate {

// Lets all users of the machine write to the updater's configuration and temporary folder, and to
// the maker's folder in ProgramData; makes the latter two if need be. Starts the system's tool for
// each of them and doesn't wait for it. Logs each start and whether it worked; a folder that is a
// link, or may be one, is as if the start had been refused.
void GrantFolderAccess(const ProductFolders& folders, const CLog& log);

}  // namespace nhupdate
