#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <array>

#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/unused_name.h"

namespace nhupdate_test {

ScratchFolder::ScratchFolder() {
  std::array<wchar_t, MAX_PATH> temporary = {};
  ::GetTempPathW(static_cast<DWORD>(temporary.size()), temporary.data());
  path_ = temporary.data() + (L"nhupdate Pr\u00FCfung 100%s " + UnusedName());
  CreateFolders(path_);
}

ScratchFolder::~ScratchFolder() {
  RemoveTree(path_);
  EXPECT_EQ(::GetFileAttributesW(path_.c_str()), INVALID_FILE_ATTRIBUTES)
      << "Something is left of a scratch folder: " << testing::PrintToString(ListTree(path_));
}

}  // namespace nhupdate_test
