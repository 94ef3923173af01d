#pragma once

// Deleting by path is only safe as long as the path leads where it seems to. Everybody may write to
// some of the folders that the program cleans up, and could put a link in the place of a folder
// between the look at it and the deletion. A pinned folder can't be exchanged.

#include <string>

#include "base/unique_handle.h"

namespace nhupdate {

class CPinnedFolder {
 public:
  // Opens the folder itself, not what a link of its name leads to. As long as the object lives,
  // neither the folder nor one above it can be renamed or removed.
  explicit CPinnedFolder(const std::wstring& folder);

  // True when it is an ordinary folder, and no link stands between it and `anchor`, which is above
  // it. False also when that can't be found out.
  [[nodiscard]] bool IsBelow(const std::wstring& anchor) const;

 private:
  std::wstring path_;
  UniqueFile folder_;
};

}  // namespace nhupdate
