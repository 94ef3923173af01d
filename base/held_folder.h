#pragma once

// Working by path is only safe as long as the path leads where it seems to. Everybody may write to
// some of the folders that the program works in, and could put a link in the place of a folder
// between the look at it and the work. A held folder stays in its place, and so do those above it.
// The limit of that: whoever may write its attributes can still turn it into a link where it is, as
// long as it is empty; Windows has no sharing mode against that. What is deleted is therefore
// looked at once more by its own handle, unless a file (base/entry_deletion.h) or folder in the
// folder is held as well, without which it can't get empty. A name that Windows reads otherwise
// (base/windows_path.h) leads to something that isn't held.

#include <optional>
#include <string>

#include "base/folder_place.h"
#include "base/unique_handle.h"

namespace nhupdate {

class CHeldFolder {
 public:
  // Opens the folder itself, not what a link of its name leads to. As long as the object lives,
  // neither the folder nor one above it can be renamed or removed.
  explicit CHeldFolder(const std::wstring& folder);

  // Why the folder could not be opened; nothing when it is held.
  [[nodiscard]] std::optional<DWORD> Error() const { return error_; }

  // True when there is no such folder, nor anything else of its name.
  [[nodiscard]] bool IsMissing() const;

  // True when it is a link, or may be one; false when there is none to be held.
  [[nodiscard]] bool IsLink() const;

  // True when it is an ordinary folder and no link; false when that can't be found out.
  [[nodiscard]] bool IsPlain() const;

  // True when it is an ordinary folder and really lies there. False also when that can't be found
  // out.
  [[nodiscard]] bool IsPlainAt(const CPlace& place) const;

  // True when it is known to lie there in the same letter case (CPlace::IsExactly), whether it is
  // a link or not.
  [[nodiscard]] bool LiesExactlyAt(const CPlace& place) const;

  // True when it is a link or is known to lie elsewhere. A folder that is no link, but whose place
  // can't be found out, is taken to lie there: for walks in which each level was held before the
  // next.
  [[nodiscard]] bool LeadsElsewhere(const CPlace& place) const;

  // True when what the path leads to is this folder or lies below it, by whatever names the two are
  // called. True also when that can't be found out; but a folder that isn't there holds nothing.
  [[nodiscard]] bool MayHold(const std::wstring& path) const;

 private:
  // Asked for once: as long as the folder is held it stays there.
  [[nodiscard]] const CPlace& OwnPlace() const;

  UniqueFile folder_;
  mutable std::optional<CPlace> place_;
  std::optional<DWORD> error_;
};

}  // namespace nhupdate
