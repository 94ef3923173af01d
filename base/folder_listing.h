#pragma once

// Walks the entries of one folder, in the order in which Windows lists them.

#include <memory>
#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

class CFolderListing {
 public:
  // `pattern` is the folder followed by a wildcard, such as L"C:\\Folder\\*.*". A folder that can't
  // be listed simply has no entries.
  explicit CFolderListing(const std::wstring& pattern);

  // Steps to the next entry, passing over "." and "..". Returns false at the end, and also when
  // Windows can't go on: what comes after that is unreachable. The three questions below are about
  // the entry of the last successful step.
  [[nodiscard]] bool Next();

  [[nodiscard]] std::wstring Name() const;
  [[nodiscard]] bool IsFolder() const;

  // A junction, symbolic link or mount point: an entry that stands for another place. Placeholders
  // of cloud storage are no links; what doesn't say what it is counts as one.
  [[nodiscard]] bool IsLink() const;

 private:
  // On the heap: listings are nested as deep as the folders are.
  std::unique_ptr<WIN32_FIND_DATAW> entry_;
  UniqueFindHandle search_;
  bool is_first_ = true;
};

}  // namespace nhupdate
