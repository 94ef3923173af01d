#pragma once

#include <string>

namespace nhupdate_test {

// Creates a link of that name to the file or folder; a test failure when that can't be done.
void CreateLink(const std::wstring& link, const std::wstring& target);

// Removes the link to a folder, if it still is one, but not the folder; a test failure when that
// can't be done.
void RemoveFolderLink(const std::wstring& link);

// Drive E: shows the folder as long as the object lives; a test failure when that can't be done.
class CFolderAsDrive {
 public:
  explicit CFolderAsDrive(const std::wstring& folder);
  ~CFolderAsDrive();
  CFolderAsDrive(const CFolderAsDrive&) = delete;
  CFolderAsDrive& operator=(const CFolderAsDrive&) = delete;
};

}  // namespace nhupdate_test
