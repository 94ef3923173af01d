#include "base/entry_deletion.h"

#include <gmock/gmock.h>

#include <tuple>
#include <vector>

#include "base/existence.h"
#include "tests/support/answers.h"
#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"
#include "tests/support/interposer.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/short_path_policy.h"

namespace nhupdate_test {
namespace {

using nhupdate::CHeldFile;
using nhupdate::ClearReadOnly;
using nhupdate::CPlace;
using nhupdate::DeleteEntry;
using nhupdate::DeleteEntryInItsPlace;
using nhupdate::EntryKind;
using nhupdate::Exists;
using nhupdate::PlaceOfFolder;

class EntryDeletionTest : public testing::Test {
 protected:
  EntryDeletionTest() {
    CreateFolders(folder_);
    WriteFileBytes(file_, "x");
  }

  [[nodiscard]] CPlace PlaceOfFile() const { return PlaceOfFolder(outer_).Below(L"\\file"); }

  // Each at the place where it lies.
  [[nodiscard]] std::optional<DWORD> DeleteFile() const {
    return DeleteEntry(file_, EntryKind::kFile, PlaceOfFile());
  }
  [[nodiscard]] std::optional<DWORD> DeleteFolder() const {
    return DeleteEntry(folder_, EntryKind::kFolder, PlaceOfFolder(folder_));
  }

  ScratchFolder scratch_;
  std::wstring outer_ = scratch_.Path() + L"\\Outer";
  std::wstring folder_ = outer_ + L"\\Folder";
  std::wstring file_ = outer_ + L"\\file";
};

TEST_F(EntryDeletionTest, TakesAFileAndAnEmptyFolder) {
  EXPECT_EQ(DeleteFile(), std::nullopt);
  EXPECT_EQ(DeleteFolder(), std::nullopt);

  EXPECT_THAT(ListTree(outer_), testing::IsEmpty());
}

TEST_F(EntryDeletionTest, TakesNoneForTheOtherKind) {
  EXPECT_EQ(DeleteEntry(file_, EntryKind::kFolder, PlaceOfFile()), DWORD{ERROR_DIRECTORY});
  EXPECT_EQ(DeleteEntry(folder_, EntryKind::kFile, PlaceOfFolder(folder_)),
            DWORD{ERROR_ACCESS_DENIED});

  EXPECT_TRUE(Exists(file_));
  EXPECT_TRUE(Exists(folder_));
}

TEST_F(EntryDeletionTest, TakesNothingForAFolderThatDoesNotSayItIsOne) {
  INTERPOSER(GetFileInformationByHandleEx) information(Answers(FALSE));

  EXPECT_EQ(DeleteFolder(), DWORD{ERROR_DIRECTORY});
}

TEST_F(EntryDeletionTest, TellsWhyNothingWasDeleted) {
  WriteFileBytes(folder_ + L"\\below", "x");

  EXPECT_EQ(DeleteEntry(outer_ + L"\\missing", EntryKind::kFile, PlaceOfFile()),
            DWORD{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(DeleteFolder(), DWORD{ERROR_DIR_NOT_EMPTY});
  EXPECT_TRUE(Exists(folder_ + L"\\below"));
}

TEST_F(EntryDeletionTest, TellsWhyNothingWasOpened) {
  constexpr DWORD kErrors[] = {ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION};
  for (const DWORD error : kErrors) {
    INTERPOSER(CreateFileW) open(Answers(INVALID_HANDLE_VALUE, error));

    EXPECT_EQ(DeleteFile(), error);
  }
}

// If it were opened twice, to look at it and to delete it, it could be exchanged in between.
TEST_F(EntryDeletionTest, OpensTheEntryItselfOnceAndLetsOthersWorkWithIt) {
  using Opening =
      std::tuple<std::wstring, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE>;
  const CPlace place = PlaceOfFile();
  const CPlace folder_place = PlaceOfFolder(folder_);
  std::vector<Opening> openings;
  INTERPOSER(CreateFileW) open([&](auto... arguments) {
    openings.emplace_back(arguments...);
    return open.Original()(arguments...);
  });

  EXPECT_EQ(DeleteEntry(file_, EntryKind::kFile, place), std::nullopt);
  EXPECT_EQ(DeleteEntry(folder_, EntryKind::kFolder, folder_place), std::nullopt);

  constexpr DWORD kAccess = DELETE | FILE_READ_ATTRIBUTES;
  constexpr DWORD kSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  constexpr DWORD kItself = FILE_FLAG_OPEN_REPARSE_POINT;
  constexpr DWORD kFolderItself = kItself | FILE_FLAG_BACKUP_SEMANTICS;
  EXPECT_THAT(
      openings,
      testing::ElementsAre(
          Opening(file_, kAccess, kSharing, nullptr, OPEN_EXISTING, kItself, nullptr),
          Opening(folder_, kAccess, kSharing, nullptr, OPEN_EXISTING, kFolderItself, nullptr)));
}

// The name goes at once where the file system knows how to do that.
TEST_F(EntryDeletionTest, TriesThePosixWayBeforeThePlainOne) {
  // Kinds of FILE_INFO_BY_HANDLE_CLASS.
  constexpr int kPlain = 4;
  constexpr int kPosix = 21;
  struct Case {
    DWORD posix_error;
    DWORD plain_error;
    std::vector<int> ways;
    std::optional<DWORD> result;
  };
  const Case cases[] = {
      {0, 0, {kPosix}, std::nullopt},
      {ERROR_INVALID_PARAMETER, 0, {kPosix, kPlain}, std::nullopt},
      {ERROR_INVALID_PARAMETER, ERROR_ACCESS_DENIED, {kPosix, kPlain}, ERROR_ACCESS_DENIED},
      {ERROR_ACCESS_DENIED, ERROR_DIR_NOT_EMPTY, {kPosix, kPlain}, ERROR_DIR_NOT_EMPTY},
  };

  for (const Case& c : cases) {
    std::vector<int> ways;
    INTERPOSER(SetFileInformationByHandle) set(
        [&](HANDLE, FILE_INFO_BY_HANDLE_CLASS way, void* information, DWORD size) -> BOOL {
          ways.push_back(way);
          if (way == kPosix) {
            // The flags say: delete it, with its name at once, unless it is a running program.
            EXPECT_EQ(*static_cast<DWORD*>(information), 7U);
            EXPECT_EQ(size, sizeof(DWORD));
          } else {
            EXPECT_EQ(static_cast<FILE_DISPOSITION_INFO*>(information)->DeleteFile, TRUE);
            EXPECT_EQ(size, sizeof(FILE_DISPOSITION_INFO));
          }
          const DWORD error = way == kPosix ? c.posix_error : c.plain_error;
          ::SetLastError(error);
          return error == 0;
        });

    EXPECT_EQ(DeleteFile(), c.result);
    EXPECT_EQ(ways, c.ways);
  }
}

// Somebody puts a link to another folder in the place of the one that was listed.
TEST_F(EntryDeletionTest, TakesNothingThatLiesElsewhereThanItSeems) {
  const CPlace folder_place = PlaceOfFolder(folder_);
  const CPlace file_place = PlaceOfFile();
  FakeListing windows;
  windows.LeadElsewhere(outer_, L"\\Device\\V1\\Windows");

  EXPECT_EQ(DeleteEntry(folder_, EntryKind::kFolder, folder_place), DWORD{ERROR_CANT_ACCESS_FILE});
  EXPECT_EQ(DeleteEntry(file_, EntryKind::kFile, file_place), DWORD{ERROR_CANT_ACCESS_FILE});
  EXPECT_EQ(DeleteEntry(file_, EntryKind::kFile, CPlace()), DWORD{ERROR_CANT_ACCESS_FILE});

  EXPECT_THAT(ListTree(outer_), testing::ElementsAre(L"Folder\\", L"file"));
}

TEST_F(EntryDeletionTest, TakesNothingBehindARealLink) {
  const std::wstring other = scratch_.Path() + L"\\Other";
  WriteFileBytes(other + L"\\file", "x");
  const CPlace place = PlaceOfFolder(folder_).Below(L"\\file");
  EXPECT_TRUE(::RemoveDirectoryW(folder_.c_str()));
  CreateLink(folder_, other);

  EXPECT_EQ(DeleteEntry(folder_ + L"\\file", EntryKind::kFile, place),
            DWORD{ERROR_CANT_ACCESS_FILE});
  EXPECT_TRUE(Exists(other + L"\\file"));
  RemoveFolderLink(folder_);
}

TEST_F(EntryDeletionTest, AsksNothingWhereNothingCanLeadElsewhere) {
  WriteFileBytes(folder_ + L"\\below", "x");
  INTERPOSER(GetFinalPathNameByHandleW) final_path(Answers(DWORD{0}));
  INTERPOSER(GetFileInformationByHandleEx) information(Answers(FALSE));

  EXPECT_EQ(DeleteEntryInItsPlace(file_), std::nullopt);
  EXPECT_EQ(DeleteEntryInItsPlace(file_), DWORD{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(DeleteEntryInItsPlace(folder_), DWORD{ERROR_DIR_NOT_EMPTY});
  EXPECT_EQ(DeleteEntryInItsPlace(folder_ + L"\\below"), std::nullopt);
  EXPECT_EQ(DeleteEntryInItsPlace(folder_), std::nullopt);

  EXPECT_EQ(final_path.Calls() + information.Calls(), 0);
  EXPECT_THAT(ListTree(outer_), testing::IsEmpty());
}

class FileToDeleteTest : public EntryDeletionTest {};

// As long as it stays its folder isn't empty.
TEST_F(FileToDeleteTest, StaysUntilItIsDeleted) {
  CHeldFile held(file_, PlaceOfFile());
  EXPECT_TRUE(held.IsValid());

  EXPECT_FALSE(::DeleteFileW(file_.c_str()));
  EXPECT_FALSE(::MoveFileW(file_.c_str(), (folder_ + L"\\file").c_str()));
  EXPECT_EQ(DeleteFile(), DWORD{ERROR_SHARING_VIOLATION});
  EXPECT_TRUE(Exists(file_));

  EXPECT_TRUE(held.Delete());
  EXPECT_FALSE(Exists(file_));
  EXPECT_FALSE(held.IsValid());
}

TEST_F(FileToDeleteTest, IsFreeWithoutHavingBeenDeleted) {
  { const CHeldFile held(file_, PlaceOfFile()); }
  EXPECT_TRUE(Exists(file_));
  {
    CHeldFile held(file_, PlaceOfFile());
    INTERPOSER(SetFileInformationByHandle) set(Answers(FALSE, ERROR_ACCESS_DENIED));
    EXPECT_FALSE(held.Delete());
    EXPECT_FALSE(held.IsValid());
  }

  EXPECT_TRUE(::DeleteFileW(file_.c_str()));
}

TEST_F(FileToDeleteTest, IsNoneThatLiesElsewhereOrIsMissingOrAFolder) {
  const CPlace place = PlaceOfFile();

  EXPECT_FALSE(CHeldFile().IsValid());
  EXPECT_FALSE(CHeldFile(file_, PlaceOfFolder(outer_)).IsValid());
  EXPECT_FALSE(CHeldFile(file_, CPlace()).IsValid());
  EXPECT_FALSE(CHeldFile(outer_ + L"\\missing", place).IsValid());
  EXPECT_FALSE(CHeldFile(folder_, PlaceOfFolder(folder_)).IsValid());
  EXPECT_TRUE(CHeldFile(file_, place).IsValid());
}

// In a folder that tells letter cases apart it could lie beside the one that was listed.
TEST_F(FileToDeleteTest, IsNoneWhoseNameIsWrittenOtherwise) {
  const CPlace place = PlaceOfFolder(outer_).Below(L"\\FILE");

  EXPECT_FALSE(CHeldFile(outer_ + L"\\FILE", place).IsValid());
  EXPECT_EQ(DeleteEntry(outer_ + L"\\FILE", EntryKind::kFile, place), std::nullopt);
}

// Nobody could delete it by another of its names meanwhile, not even the program.
TEST_F(FileToDeleteTest, IsNoneThatHasSeveralNamesOrDoesNotTell) {
  const std::wstring name = folder_ + L"\\name";
  ASSERT_TRUE(::CreateHardLinkW(name.c_str(), file_.c_str(), nullptr));
  EXPECT_FALSE(CHeldFile(file_, PlaceOfFile()).IsValid());

  ASSERT_TRUE(::DeleteFileW(name.c_str()));
  EXPECT_TRUE(CHeldFile(file_, PlaceOfFile()).IsValid());
  INTERPOSER(GetFileInformationByHandleEx) information(Answers(FALSE, ERROR_INVALID_PARAMETER));
  EXPECT_FALSE(CHeldFile(file_, PlaceOfFile()).IsValid());
}

TEST_F(EntryDeletionTest, OpensAnEntryWithALongPath) {
  const std::wstring folder = LongPathBelow(outer_);
  CreateFolders(folder);
  const ShortPathPolicy policy;

  // Its place isn't known, so it stays; that it was opened can be seen from the error.
  EXPECT_EQ(DeleteEntry(folder, EntryKind::kFolder, CPlace()), DWORD{ERROR_CANT_ACCESS_FILE});
}

class ReadOnlyFileTest : public EntryDeletionTest {
 protected:
  ReadOnlyFileTest() {
    EXPECT_TRUE(
        ::SetFileAttributesW(file_.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN));
  }
};

TEST_F(ReadOnlyFileTest, KeepsItsOtherAttributes) {
  ClearReadOnly(file_, PlaceOfFile());

  EXPECT_EQ(::GetFileAttributesW(file_.c_str()) & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN),
            DWORD{FILE_ATTRIBUTE_HIDDEN});
  EXPECT_EQ(ReadFileBytes(file_), "x");
}

// To Windows 0 means "as it was", for attributes and times alike. So one attribute has to be given.
TEST_F(ReadOnlyFileTest, GetsAnAttributeInAnyCaseAndNoTime) {
  INTERPOSER(GetFileInformationByHandleEx) information(
      [](HANDLE, FILE_INFO_BY_HANDLE_CLASS, void* answer, DWORD) -> BOOL {
        *static_cast<FILE_BASIC_INFO*>(answer) = {
            {{1, 1}}, {{2, 2}}, {{3, 3}}, {{4, 4}}, FILE_ATTRIBUTE_READONLY};
        return TRUE;
      });
  std::vector<FILE_BASIC_INFO> written;
  INTERPOSER(SetFileInformationByHandle) set(
      [&](HANDLE, FILE_INFO_BY_HANDLE_CLASS kind, void* answer, DWORD) -> BOOL {
        EXPECT_EQ(kind, FileBasicInfo);
        written.push_back(*static_cast<FILE_BASIC_INFO*>(answer));
        return TRUE;
      });

  ClearReadOnly(file_, PlaceOfFile());

  ASSERT_EQ(written.size(), 1U);
  EXPECT_EQ(written[0].FileAttributes, DWORD{FILE_ATTRIBUTE_NORMAL});
  EXPECT_EQ(written[0].CreationTime.QuadPart | written[0].LastAccessTime.QuadPart |
                written[0].LastWriteTime.QuadPart | written[0].ChangeTime.QuadPart,
            0);
}

TEST_F(ReadOnlyFileTest, StaysReadOnlyUnlessItLiesAtThePlace) {
  const CPlace place = PlaceOfFile();
  INTERPOSER(SetFileInformationByHandle) set(Answers(TRUE));

  ClearReadOnly(file_, PlaceOfFolder(outer_));
  ClearReadOnly(file_, CPlace());
  ClearReadOnly(outer_ + L"\\missing", place);
  {
    FakeListing windows;
    windows.LeadElsewhere(outer_, L"\\Device\\V1\\Windows");
    ClearReadOnly(file_, place);
  }
  {
    INTERPOSER(GetFileInformationByHandleEx) information(Answers(FALSE));
    ClearReadOnly(file_, place);
  }

  EXPECT_EQ(set.Calls(), 0);
}

}  // namespace
}  // namespace nhupdate_test
