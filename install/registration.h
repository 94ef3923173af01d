#pragma once

// What Windows and the maker's other products know of the installed product.

#include "base/product_folders.h"
#include "log/log.h"

namespace nhupdate {

// Registers the product with Windows. Always true: single values that can't be written are no
// reason to call an installation failed.
[[nodiscard]] bool RegisterProduct(const ProductFolders& folders, const CLog& log);

}  // namespace nhupdate
