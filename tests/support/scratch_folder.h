#pragma once

// A folder of a test's own, with blanks, a letter outside ASCII and a "%" in its name. It goes with
// the object, and so does all that is in it; a test that still holds something in it open fails.

#include <string>

namespace nhupdate_test {

class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::wstring& Path() const { return path_; }

 private:
  std::wstring path_;
};

}  // namespace nhupdate_test
