#pragma once

// Installing the sibling product beside the base folder.

#include "base/product_folders.h"
#include "install/folder_copy.h"
#include "log/log.h"

namespace nhupdate {

// Copies the updater there, lets it download the product and runs the installation program that
// came with it. Returns one of the codes of the NimbaCast installation (update/result_code.h).
[[nodiscard]] int InstallNimbaCast(const ProductFolders& folders, CFolderCopy& copy,
                                   const CLog& log);

}  // namespace nhupdate
