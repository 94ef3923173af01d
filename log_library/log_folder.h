#pragma once

// The folder with the log files: the current one, NHUpdateManager.log, and the rotated ones,
// NHUpdateManager.<number>.log, numbered one after the other (see rotated_files.h). A rotated file
// never changes its name again.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/folder_place.h"
#include "base/held_folder.h"
#include "base/unique_handle.h"
#include "log_library/start_result.h"

namespace nhupdate {

class CLogFolder {
 public:
  // Takes the folder after making sure that it is one, that neither it nor one of the three above
  // it is a link (users may write there; whoever may write further up may put links there), and
  // holds it: until the object is gone the folder and those above it can't be renamed, removed or
  // exchanged. Where others have it open in a way that doesn't allow that, it is used all the same:
  // each file is looked at by its own handle. Of a path without a drive letter, and of a drive
  // itself, only the folder is looked at.
  [[nodiscard]] StartResult Open(const std::wstring& path);

  [[nodiscard]] std::wstring PathOf(const std::wstring& name) const;

  // Names for the next rotated file, to be tried one after the other (see rotated_files.h).
  [[nodiscard]] std::vector<std::wstring> NextRotatedNames() const;

  // Deletes rotated files: those that were written last more than `max_age_days` ago, and the
  // oldest beyond `max_count`. What can't be deleted stays until the next time. So does what is
  // more than a few dozen: anyone may put any number of files there, and nobody is to wait for
  // them. And so does a file that a writer still has open: one that hasn't noticed the rotation
  // yet, or was stopped in the middle of a record, would write into what is gone. Of a link, which
  // only others can have put there, what it leads to stays, and so does a folder.
  void DeleteOutdated(std::uint32_t max_count, std::uint32_t max_age_days) const;

  // True when the file is the one of that name in this very folder, and not one that a link led to.
  [[nodiscard]] bool IsNamed(const UniqueFile& file, const std::wstring& name) const;

 private:
  [[nodiscard]] bool IsReachedWithoutUsersLinks() const;
  [[nodiscard]] CPlace PlaceOf(const std::wstring& name) const;

  std::wstring path_;
  CPlace place_;
  std::optional<CHeldFolder> held_;
};

}  // namespace nhupdate
