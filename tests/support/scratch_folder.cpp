#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/unused_name.h"

namespace nhupdate_test {

namespace {

// Wine deletes what a link leads to instead of the link, which then shows in no listing, but keeps
// its folder from being removed. For a folder that is held open the error is another one.
bool HoldsNothingButDeadLinks(const std::wstring& folder) {
  std::vector<std::wstring> left = ListTree(folder);
  left.push_back(L"");
  return std::all_of(left.begin(), left.end(), [&](const std::wstring& entry) {
    const BOOL is_removed = ::RemoveDirectoryW((folder + L"\\" + entry).c_str());
    const DWORD error = ::GetLastError();
    return !is_removed && error == ERROR_DIR_NOT_EMPTY;
  });
}

}  // namespace

ScratchFolder::ScratchFolder() {
  std::array<wchar_t, MAX_PATH> temporary = {};
  ::GetTempPathW(static_cast<DWORD>(temporary.size()), temporary.data());
  path_ = temporary.data() + (L"nhupdate Pr\u00FCfung 100%s " + UnusedName());
  CreateFolders(path_);
}

ScratchFolder::~ScratchFolder() {
  RemoveTree(path_);
  const bool is_gone = ::GetFileAttributesW(path_.c_str()) == INVALID_FILE_ATTRIBUTES;
  EXPECT_TRUE(is_gone || HoldsNothingButDeadLinks(path_))
      << "Something is left of a scratch folder: " << testing::PrintToString(ListTree(path_));
}

}  // namespace nhupdate_test
