#include "tests/support/held_file.h"

#include <gtest/gtest-spi.h>

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

class HeldFileTest : public testing::Test {
 protected:
  HeldFileTest() { WriteFileBytes(file_, "x"); }

  // The error that opening the file with this access gives; ERROR_SUCCESS if it can be opened.
  [[nodiscard]] DWORD OpeningFor(DWORD access) const {
    const UniqueFile file(::CreateFileW(file_.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD error = ::GetLastError();
    return file.IsValid() ? ERROR_SUCCESS : error;
  }

  ScratchFolder scratch_;
  const std::wstring file_ = scratch_.Path() + L"\\file";
};

TEST_F(HeldFileTest, IsClosedToOthersUntilItIsReleased) {
  HeldFile held(file_);
  EXPECT_EQ(OpeningFor(GENERIC_READ), DWORD{ERROR_SHARING_VIOLATION});
  EXPECT_FALSE(::DeleteFileW(file_.c_str()));

  held.Release();

  EXPECT_EQ(OpeningFor(GENERIC_READ), DWORD{ERROR_SUCCESS});
}

TEST_F(HeldFileTest, MayBeShared) {
  const HeldFile held(file_, FILE_SHARE_READ);

  EXPECT_EQ(OpeningFor(GENERIC_READ), DWORD{ERROR_SUCCESS});
  EXPECT_EQ(OpeningFor(GENERIC_WRITE), DWORD{ERROR_SHARING_VIOLATION});
}

TEST_F(HeldFileTest, MayBeAFolder) {
  const std::wstring folder = scratch_.Path() + L"\\folder";
  CreateFolders(folder);
  HeldFile held(folder);
  EXPECT_FALSE(::RemoveDirectoryW(folder.c_str()));

  held.Release();

  EXPECT_TRUE(::RemoveDirectoryW(folder.c_str()));
}

TEST_F(HeldFileTest, FailsTheTestWhenThereIsNone) {
  EXPECT_NONFATAL_FAILURE(HeldFile(L"C:\\no such file"), "Can't hold");
}

}  // namespace
}  // namespace nhupdate_test
