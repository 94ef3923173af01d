#pragma once

// Putting a staged product over the installed one.

#include <string>

#include "base/product_folders.h"
#include "log/log.h"
#include "text/string_table.h"

namespace nhupdate {

// Replaces the files of the base folder by those that are staged, then copies all staged folders,
// with retries. When something stays in the way the user is told what, and the result is false.
// Without a base folder there is nothing to be done and nothing is. `last_failed_copy_path` is set
// to what the folder copy could not copy, if there was such a thing.
[[nodiscard]] bool InstallCopy(const ProductFolders& folders, const StringTable& strings,
                               const CLog& log, std::wstring& last_failed_copy_path);

}  // namespace nhupdate
