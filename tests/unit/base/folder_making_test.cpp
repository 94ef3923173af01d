#include "base/folder_making.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

class FolderMakingTest : public testing::Test {
 protected:
  ScratchFolder scratch_;
  std::wstring folder_ = scratch_.Path() + L"\\folder";
};

TEST_F(FolderMakingTest, SucceedsWhetherOrNotTheFolderIsThere) {
  EXPECT_TRUE(MakeFolder(folder_));
  EXPECT_TRUE(Exists(folder_));
  EXPECT_TRUE(MakeFolder(folder_));
}

TEST_F(FolderMakingTest, TakesAFileForSomethingThatIsThere) {
  WriteFileBytes(folder_, "x");

  EXPECT_TRUE(MakeFolder(folder_));
  EXPECT_EQ(ReadFileBytes(folder_), "x");
}

TEST_F(FolderMakingTest, FailsWithoutAParentOrTheRight) {
  EXPECT_FALSE(MakeFolder(folder_ + L"\\inner"));

  INTERPOSER(CreateDirectoryW) create(Answers(FALSE, ERROR_ACCESS_DENIED));

  EXPECT_FALSE(MakeFolder(folder_));
}

TEST_F(FolderMakingTest, GivesWindowsLongPathsInTheirOwnFormAndNoRights) {
  const std::wstring path = L"C:\\" + std::wstring(300, L'd');
  INTERPOSER(CreateDirectoryW) create([&](const wchar_t* name, SECURITY_ATTRIBUTES* rights) {
    EXPECT_EQ(name, L"\\\\?\\" + path);
    EXPECT_EQ(rights, nullptr);
    return TRUE;
  });

  EXPECT_TRUE(MakeFolder(path));
  EXPECT_EQ(create.Calls(), 1);
}

}  // namespace
}  // namespace nhupdate_test
