#pragma once

// Deleting a folder with all that is in it, and nothing else.

#include <string>
#include <utility>

#include "base/folder_place.h"

namespace nhupdate {

// Deletes the folder with all its content, as far as possible, and returns whether the folder is
// gone. Links are removed, but what they lead to is left alone. `owned_root` is the product's
// folder: within it, where some folders are open to everybody, the whole way to the folder must be
// free of links; elsewhere only the folder itself is looked at.
[[nodiscard]] bool DeleteFolderTree(const std::wstring& folder, const std::wstring& owned_root);

// The same for several folders, one after another. Where the folder lies from which the way has to
// be free of links is found out once, and what lies elsewhere later is left alone.
class CFolderRemoval {
 public:
  explicit CFolderRemoval(std::wstring owned_root) : owned_root_(std::move(owned_root)) {}

  [[nodiscard]] bool Delete(const std::wstring& folder);

 private:
  std::wstring owned_root_;
  std::wstring anchor_;  // the last one
  CPlace anchor_place_;
};

}  // namespace nhupdate
