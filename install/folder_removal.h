#pragma once

// Deleting a folder with all that is in it, and nothing else.

#include <string>

namespace nhupdate {

// Deletes the folder with all its content, as far as possible, and returns whether the folder is
// gone. Links are removed, but what they lead to is left alone. `owned_root` is the product's
// folder: within it, where some folders are open to everybody, the whole way to the folder must be
// free of links; elsewhere only the folder itself is looked at.
[[nodiscard]] bool DeleteFolderTree(const std::wstring& folder, const std::wstring& owned_root);

}  // namespace nhupdate
