#include <gtest/gtest-spi.h>

#include "tests/support/files.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

class FileSupportTest : public testing::Test {
 protected:
  [[nodiscard]] std::wstring Path(const std::wstring& relative) const {
    return scratch_.Path() + L"\\" + relative;
  }

  ScratchFolder scratch_;
};

TEST_F(FileSupportTest, ReadsWhatWasWritten) {
  const std::string bytes("a\0\r\n\xFF", 5);

  WriteFileBytes(Path(L"new\\folder\\file"), bytes);

  EXPECT_EQ(ReadFileBytes(Path(L"new\\folder\\file")), bytes);
}

TEST_F(FileSupportTest, HasPathsThatAreTooLongForWindowsByDefault) {
  EXPECT_GT(LongPathBelow(L"C:").size(), std::size_t{MAX_PATH});
}

TEST_F(FileSupportTest, AppendsToWhatIsThereOrNot) {
  AppendFileBytes(Path(L"file"), "one ");
  AppendFileBytes(Path(L"file"), "two");

  EXPECT_EQ(ReadFileBytes(Path(L"file")), "one two");
}

TEST_F(FileSupportTest, FailsTheTestWhereItFails) {
  WriteFileBytes(Path(L"file"), "content");
  CreateFolders(Path(L"folder"));
  std::string bytes = "before";

  EXPECT_NONFATAL_FAILURE(WriteFileBytes(Path(L"folder"), "x"), "Can't write");
  EXPECT_NONFATAL_FAILURE(CreateFolders(Path(L"file")), "Can't create");
  EXPECT_NONFATAL_FAILURE(bytes = ReadFileBytes(Path(L"missing")), "Can't read");
  EXPECT_EQ(bytes, "");
  {
    const INTERPOSER(ReadFile) read(Answers(FALSE, ERROR_LOCK_VIOLATION));
    EXPECT_NONFATAL_FAILURE(std::ignore = ReadFileBytes(Path(L"file")), "error 33");
  }
  {
    const INTERPOSER(ReadFile) read([](auto, auto, auto, DWORD* count, auto) {
      *count = 3;
      return TRUE;
    });
    EXPECT_NONFATAL_FAILURE(std::ignore = ReadFileBytes(Path(L"file")), "Read 3 of 7 bytes");
  }
  {
    const INTERPOSER(FindNextFileW) next(Answers(FALSE, ERROR_NETNAME_DELETED));
    EXPECT_NONFATAL_FAILURE(std::ignore = ListTree(scratch_.Path()), "64");
  }
}

TEST_F(FileSupportTest, CreatesFoldersThatMayBeThereAlready) {
  CreateFolders(Path(L"a\\b"));
  CreateFolders(Path(L"a\\b\\c"));
  CreateFolders(Path(L"a\\b"));

  EXPECT_THAT(ListTree(scratch_.Path()), ElementsAre(L"a\\", L"a\\b\\", L"a\\b\\c\\"));
}

TEST_F(FileSupportTest, ListsFilesAndFoldersAtAnyDepthInOrder) {
  WriteFileBytes(Path(L"b.txt"), "");
  WriteFileBytes(Path(L"a\\.hidden"), "");
  WriteFileBytes(Path(L"a\\c\\\u00FC"), "");
  ::SetFileAttributesW(Path(L"a\\.hidden").c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);

  EXPECT_THAT(ListTree(scratch_.Path()),
              ElementsAre(L"a\\", L"a\\.hidden", L"a\\c\\", L"a\\c\\\u00FC", L"b.txt"));
  EXPECT_THAT(ListTree(Path(L"missing")), IsEmpty());
}

TEST_F(FileSupportTest, RemovesAFolderWithAllInIt) {
  WriteFileBytes(Path(L"folder\\inner\\read-only"), "");
  ::SetFileAttributesW(Path(L"folder\\inner\\read-only").c_str(), FILE_ATTRIBUTE_READONLY);
  WriteFileBytes(Path(L"folder.txt"), "");

  RemoveTree(Path(L"folder"));

  EXPECT_THAT(ListTree(scratch_.Path()), ElementsAre(L"folder.txt"));
}

// Destroys a scratch folder while the file or folder of that name in it is still held open.
void LeaveOpen(const std::wstring& name, std::optional<HeldFile>& held, std::wstring& folder) {
  const ScratchFolder scratch;
  folder = scratch.Path();
  WriteFileBytes(folder + L"\\folder\\file", "");
  held.emplace(folder + L"\\" + name, FILE_SHARE_READ);
}

TEST(ScratchFolderTest, FailsTheTestThatStillHoldsSomethingInIt) {
  for (const wchar_t* name : {L"folder\\file", L"folder", L""}) {
    std::optional<HeldFile> held;
    std::wstring folder;

    EXPECT_NONFATAL_FAILURE(LeaveOpen(name, held, folder), "Something is left");

    held.reset();
    RemoveTree(folder);
  }
}

TEST(ScratchFolderTest, HasANameOfItsOwnAndIsGoneAfterwards) {
  std::wstring first;
  {
    const ScratchFolder scratch;
    first = scratch.Path();
    EXPECT_THAT(ListTree(first), IsEmpty());
  }
  const std::wstring second = ScratchFolder().Path();

  EXPECT_NE(first, second);
  EXPECT_EQ(::GetFileAttributesW(first.c_str()), INVALID_FILE_ATTRIBUTES);
}

}  // namespace
}  // namespace nhupdate_test
