#pragma once

// The process's current folder, in which Windows looks for programs before anywhere else.

#include <string>

namespace nhupdate {

// Makes the system folder the current one for as long as the object lives.
class CSystemFolderAsCurrent {
 public:
  CSystemFolderAsCurrent();
  ~CSystemFolderAsCurrent();
  CSystemFolderAsCurrent(const CSystemFolderAsCurrent&) = delete;
  CSystemFolderAsCurrent& operator=(const CSystemFolderAsCurrent&) = delete;

  // False when Windows refused: the current folder is then the one that it was.
  [[nodiscard]] bool IsCurrent() const { return is_current_; }

 private:
  std::wstring old_folder_;  // empty when Windows didn't tell
  bool is_current_ = false;
};

}  // namespace nhupdate
