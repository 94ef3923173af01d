#include "tests/support/fake_link.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

class FakeLinkTest : public testing::Test {
 protected:
  FakeLinkTest() { WriteFileBytes(target_ + L"\\file", "F"); }

  UniqueFile Open(DWORD access, DWORD sharing) {
    return UniqueFile(::CreateFileW(link_.c_str(), access, sharing, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                                    nullptr));
  }

  ScratchFolder scratch_;
  const std::wstring link_ = scratch_.Path() + L"\\link";
  const std::wstring target_ = scratch_.Path() + L"\\target";
};

TEST_F(FakeLinkTest, LeadsToItsTargetAndIsListedAsALink) {
  const FakeLink link(link_, target_, IO_REPARSE_TAG_SYMLINK);
  WIN32_FIND_DATAW entry = {};
  const UniqueFindHandle search(::FindFirstFileW((scratch_.Path() + L"\\lin*").c_str(), &entry));

  EXPECT_EQ(ReadFileBytes(link_ + L"\\file"), "F");
  EXPECT_THAT(ListTree(link_), ElementsAre(L"file"));
  EXPECT_NE(entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT, 0u);
  EXPECT_EQ(entry.dwReserved0, DWORD{IO_REPARSE_TAG_SYMLINK});
}

TEST_F(FakeLinkTest, LeavesItsTargetAloneWhenItIsDeleted) {
  FakeLink link(link_, target_);
  FILE_ATTRIBUTE_TAG_INFO information = {};
  FILE_DISPOSITION_INFO deletion = {TRUE};
  UniqueFile opened = Open(DELETE, FILE_SHARE_DELETE);

  EXPECT_TRUE(::GetFileInformationByHandleEx(opened.Get(), FileAttributeTagInfo, &information,
                                             sizeof(information)));
  EXPECT_EQ(information.ReparseTag, DWORD{IO_REPARSE_TAG_MOUNT_POINT});
  link.RefuseDeletion(ERROR_ACCESS_DENIED);
  EXPECT_FALSE(
      ::SetFileInformationByHandle(opened.Get(), FileDispositionInfo, &deletion, sizeof(deletion)));
  link.RefuseDeletion(ERROR_SUCCESS);
  EXPECT_TRUE(
      ::SetFileInformationByHandle(opened.Get(), FileDispositionInfo, &deletion, sizeof(deletion)));
  opened.Reset();

  EXPECT_FALSE(link.IsThere());
  EXPECT_THAT(ListTree(scratch_.Path()), ElementsAre(L"target\\", L"target\\file"));
}

TEST_F(FakeLinkTest, TakesThePlaceOfAFolderAtItsMomentUnlessThatIsHeld) {
  for (const bool is_held : {true, false}) {
    CreateFolders(link_);
    const UniqueFile held = Open(FILE_LIST_DIRECTORY, is_held ? 0 : FILE_SHARE_DELETE);
    const FakeLink link(link_, target_,
                        [](const std::wstring& path) { return path.ends_with(L"\\now"); });

    EXPECT_FALSE(link.IsThere());
    ::DeleteFileW((link_ + L"\\now").c_str());

    EXPECT_EQ(link.IsThere(), !is_held);
  }
}

TEST_F(FakeLinkTest, CanBeMadeOfAFolderThatIsHeld) {
  CreateFolders(link_);
  const UniqueFile held = Open(FILE_LIST_DIRECTORY, 0);
  const FakeLink link(
      link_, target_, [](const std::wstring& path) { return path.ends_with(L"\\file"); }, true);

  EXPECT_EQ(ReadFileBytes(link_ + L"\\file"), "F");
}

}  // namespace
}  // namespace nhupdate_test
