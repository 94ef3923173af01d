#pragma once

// Where a file or folder really is. One can go by many names: through links, as a short name, in
// another letter case, or as seen from the current drive. Two questions are answered here: is it a
// link, and is its place the same as, or below, another one. Both are put to an open handle, since
// what a path leads to may change at any moment.

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

// True for the attributes and reparse tag of a junction, symbolic link or mount point. Placeholders
// of cloud storage are no links; a reparse point that doesn't say what it is counts as one.
[[nodiscard]] bool MeansLink(DWORD attributes, DWORD reparse_tag);

// Opens the folder for listing and, as long as the handle lives, keeps others from renaming or
// removing it, and with it those above it. Others who have it open may be in the way of that. The
// first opens the folder itself, even if it is a link, the second what the path leads to.
[[nodiscard]] UniqueFile HoldFolderItself(const std::wstring& folder);
[[nodiscard]] UniqueFile HoldFolder(const std::wstring& folder);

// Opens the file or folder itself for no more than questions, which nobody can be in the way of.
[[nodiscard]] UniqueFile LookAtItself(const std::wstring& path);

// True when what is open is a link; also when that can't be found out. A file system that knows no
// links is only asked what it can answer.
[[nodiscard]] bool IsLink(const UniqueFile& opened);

// True when what is open is known to be a folder, and no link.
[[nodiscard]] bool IsPlainFolder(const UniqueFile& opened);

// The place of something that was open when the object was made. Without anything to compare
// nothing is said to be the same: an unknown place is not even the same as itself.
class CPlace {
 public:
  CPlace() = default;  // unknown
  explicit CPlace(const UniqueFile& opened);

  [[nodiscard]] bool IsKnown() const { return !path_.empty(); }
  [[nodiscard]] bool IsSameAs(const CPlace& other) const;

  // The same, also in the letter case of every name. Where the names are as they were listed, only
  // this says that there is no link on the way: a folder can be told to tell letter cases apart,
  // and there a link could lead to the folder beside it.
  [[nodiscard]] bool IsExactly(const CPlace& other) const;

  // True when it is that folder's place, or lies below it.
  [[nodiscard]] bool IsWithin(const CPlace& folder) const;

  // What lies below by that relative path, which begins with a backslash or is empty, if no link is
  // on the way.
  [[nodiscard]] CPlace Below(const std::wstring& relative_path) const;

 private:
  // All links on the way resolved, in the kernel's form, which every volume has, and without a
  // trailing backslash.
  std::wstring path_;
};

// Where the folder is that the path leads to; unknown when it can't be opened. A bare drive is its
// root.
[[nodiscard]] CPlace PlaceOfFolder(const std::wstring& folder);

// Where `path` is if no link lies between `anchor` and it. The anchor itself may be reached by a
// link: that was the choice of who installed. Unknown when the anchor can't be opened, or the path
// is neither the anchor nor below it.
[[nodiscard]] CPlace PlaceSeenFrom(const std::wstring& anchor, const std::wstring& path);

}  // namespace nhupdate
