#pragma once

// The process's current folder, in which Windows looks for programs before anywhere else.

#include <string>

namespace nhupdate {

// Makes the system folder the current one for as long as the object lives. Where that can't be done
// the current folder stays what it is.
class CSystemFolderAsCurrent {
 public:
  CSystemFolderAsCurrent();
  ~CSystemFolderAsCurrent();
  CSystemFolderAsCurrent(const CSystemFolderAsCurrent&) = delete;
  CSystemFolderAsCurrent& operator=(const CSystemFolderAsCurrent&) = delete;

 private:
  std::wstring old_folder_;  // empty when there is nothing to go back to
};

}  // namespace nhupdate
