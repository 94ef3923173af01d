// Where the folder copy ends, what it says of it, and how it is tried again.

#include <gmock/gmock.h>

#include <utility>

#include "base/existence.h"
#include "tests/support/answers.h"
#include "tests/support/failing_copy.h"
#include "tests/support/fake_listing.h"
#include "tests/support/held_file.h"
#include "tests/support/interposer.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/unit/install/folder_copy_test.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;

using HinderedFolderCopyTest = FolderCopyTest;

// For a file in the place of a folder Windows gives error 267, other systems give other errors.
TEST_F(HinderedFolderCopyTest, TakesASourceForMissingOnlyWhenThereIsNoFolder) {
  constexpr std::pair<DWORD, bool> cases[] = {
      {ERROR_FILE_NOT_FOUND, true}, {ERROR_PATH_NOT_FOUND, true},     {ERROR_NO_MORE_FILES, true},
      {ERROR_DIRECTORY, true},      {ERROR_ACCESS_DENIED, false},     {ERROR_INVALID_NAME, false},
      {ERROR_NOT_READY, false},     {ERROR_SHARING_VIOLATION, false}, {ERROR_BAD_NETPATH, false},
  };

  for (const auto& [error, is_missing] : cases) {
    log_.ForgetRecords();
    failed_path_ = L"nothing yet";
    FakeListing listing;
    listing.Forbid(source_, error);

    EXPECT_EQ(Copy(), is_missing) << error;

    EXPECT_EQ(log_.Records(),
              is_missing ? Lines{FolderLine()} : (Lines{FolderLine(), FailureLine(error)}));
    EXPECT_EQ(failed_path_, is_missing ? L"nothing yet" : target_) << error;
  }
}

TEST_F(HinderedFolderCopyTest, TakesASourceThatIsNoFolderForAnEmptyOne) {
  WriteFileBytes(root_ + L"\\file", "x");
  for (const std::wstring name : {L"none", L"file"}) {
    log_.ForgetRecords();

    EXPECT_TRUE(copy_.Copy(root_ + L"\\to " + name, root_ + L"\\" + name, kReplacing));

    EXPECT_THAT(log_.Records(),
                ElementsAre(L"2|Copy folder from {root}\\" + name + L" to {root}\\to " + name));
    EXPECT_TRUE(Exists(root_ + L"\\to " + name));
  }
}

// What happens to a sub-folder of the source that was there when the folder around it was listed.
class HinderedSubFolderCopyTest : public FolderCopyTest {
 protected:
  HinderedSubFolderCopyTest() { WriteFiles(source_, {L"\\b\\c.txt", L"\\z.txt"}); }

  void ExpectEndAtSubFolder(DWORD error) {
    ExpectFailure({FolderLine(), FolderLine(L"\\b"), FailureLine(error)});

    EXPECT_EQ(failed_path_, target_ + L"\\b");
    EXPECT_THAT(ListTree(target_), ElementsAre(L"b\\"));
  }

  const std::wstring sub_folder_ = source_ + L"\\b";
};

TEST_F(HinderedSubFolderCopyTest, EndsWhereItCannotBeListed) {
  for (const int error :
       {ERROR_PATH_NOT_FOUND, ERROR_DIRECTORY, ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION}) {
    FakeListing listing;
    listing.Forbid(sub_folder_, static_cast<DWORD>(error));

    ExpectEndAtSubFolder(static_cast<DWORD>(error));
  }
}

// Some file systems list no "." and "..", so there is nothing to be found.
TEST_F(HinderedSubFolderCopyTest, GoesOnWhereItHasNoEntryAtAll) {
  FakeListing listing;
  listing.Forbid(sub_folder_, ERROR_FILE_NOT_FOUND);

  EXPECT_TRUE(Copy());

  EXPECT_THAT(ListTree(target_), ElementsAre(L"b\\", L"z.txt"));
}

// It could be exchanged for a link while it is walked.
TEST_F(HinderedSubFolderCopyTest, EndsWhereItCannotBeHeld) {
  const HeldFile movable(sub_folder_, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         DELETE);

  ExpectEndAtSubFolder(ERROR_SHARING_VIOLATION);
}

// It may have become a link since it was listed.
TEST_F(HinderedSubFolderCopyTest, EndsWhereItCannotBeAskedWhatItIs) {
  INTERPOSER(GetFileInformationByHandleEx) information([&](auto... arguments) {
    // The first question is about the destination's.
    return information.Calls() == 1 ? information.Original()(arguments...)
                                    : Answers(FALSE, ERROR_ACCESS_DENIED)();
  });

  ExpectEndAtSubFolder(ERROR_CANT_ACCESS_FILE);
}

TEST_F(HinderedSubFolderCopyTest, EndsWhereItsListingBreaksOff) {
  FakeListing listing;
  listing.BreakOff(sub_folder_, ERROR_NETNAME_DELETED);

  ExpectEndAtSubFolder(ERROR_NETNAME_DELETED);
}

TEST_F(HinderedSubFolderCopyTest, EndsAtItsFirstFileWhereTheFolderForItCannotBeMade) {
  INTERPOSER(CreateDirectoryW) make([&](const wchar_t* folder, auto... rest) {
    return folder == target_ + L"\\b" ? Answers(FALSE, ERROR_ACCESS_DENIED)()
                                      : make.Original()(folder, rest...);
  });

  ExpectFailure({FolderLine(), FolderLine(L"\\b"), FileLine(L"\\b\\c.txt"), FailureLine(3)});
}

// It could come back as a link.
TEST_F(HinderedSubFolderCopyTest, EndsWhereTheFolderForItGoesAwayAfterItWasMade) {
  CreateFolders(target_ + L"\\b");
  INTERPOSER(CreateFileW) open([&](const wchar_t* path, auto... rest) {
    if (path == target_ + L"\\b") {
      EXPECT_TRUE(::RemoveDirectoryW(path));
    }
    return open.Original()(path, rest...);
  });

  ExpectFailure({FolderLine(), FolderLine(L"\\b"), FailureLine(2)});
}

TEST_F(HinderedFolderCopyTest, EndsAtTheFirstFailedFileAtAnyDepth) {
  WriteFiles(source_, {L"\\a.txt", L"\\b\\held.txt", L"\\b\\next.txt", L"\\z.txt"});
  HeldFile lock(source_ + L"\\b\\held.txt");

  ExpectFailure({}, {.log_details = false});
  ExpectFailure({FolderLine(), FileLine(L"\\a.txt"), FolderLine(L"\\b"), FileLine(L"\\b\\held.txt"),
                 FailureLine(32)});

  lock.Release();
  EXPECT_EQ(failed_path_, target_ + L"\\b\\held.txt");
  EXPECT_THAT(ListTree(target_), ElementsAre(L"a.txt", L"b\\"));
}

TEST_F(HinderedFolderCopyTest, DoesNotCreateWhatIsMissingAboveTheDestination) {
  WriteFileBytes(source_ + L"\\a.txt", "A");

  EXPECT_FALSE(copy_.Copy(root_ + L"\\none\\to", source_, kReplacing));

  EXPECT_THAT(log_.Records(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\none\\to",
                          L"2|Copy file from {root}\\from\\a.txt to {root}\\none\\to\\a.txt",
                          FailureLine(3)));
}

// Windows refuses with error 5; Wine lets root write to anything, so the refusal is a fake.
TEST_F(HinderedFolderCopyTest, EndsAtAReadOnlyFileOfTheDestination) {
  WriteFileBytes(source_ + L"\\a", "A");
  WriteFileBytes(target_ + L"\\a", "old");
  ::SetFileAttributesW((target_ + L"\\a").c_str(), FILE_ATTRIBUTE_READONLY);
  const FailingCopy copy(ERROR_ACCESS_DENIED, [](const std::wstring& target) {
    return (::GetFileAttributesW(target.c_str()) & FILE_ATTRIBUTE_READONLY) != 0;
  });

  ExpectFailure({FolderLine(), FileLine(L"\\a"), FailureLine(5)});

  EXPECT_EQ(ReadFileBytes(target_ + L"\\a"), "old");
}

TEST_F(HinderedFolderCopyTest, EndsWhereAFolderOfTheDestinationHasTheFilesName) {
  WriteFileBytes(source_ + L"\\a", "A");
  WriteFileBytes(target_ + L"\\a\\inner", "I");

  ExpectFailure({FolderLine(), FileLine(L"\\a"), FailureLine(5)}, kReplacing);

  EXPECT_TRUE(Exists(target_ + L"\\a\\inner"));
}

TEST_F(HinderedFolderCopyTest, EndsWhereAFileOfTheDestinationHasTheFoldersName) {
  WriteFileBytes(source_ + L"\\a\\inner", "I");
  WriteFileBytes(target_ + L"\\a", "A");

  ExpectFailure({FolderLine(), DeletionLine(L"\\a"), FolderLine(L"\\a"), FileLine(L"\\a\\inner"),
                 FailureLine(3)},
                kReplacing);

  EXPECT_EQ(ReadFileBytes(target_ + L"\\a"), "A");
}

TEST_F(HinderedFolderCopyTest, ClosesItsListingsAlsoAfterAFailure) {
  WriteFileBytes(source_ + L"\\b\\c\\file", "x");
  const FakeListing listing;
  const FailingCopy copy(ERROR_DISK_FULL);

  EXPECT_FALSE(Copy());

  EXPECT_EQ(listing.Patterns().size(), 3u);
  EXPECT_EQ(listing.Closed(), 3);
}

// Tried ten times, three seconds apart; the folder is deleted anew at each attempt.
class RetriedFolderCopyTest : public FolderCopyTest {
 protected:
  RetriedFolderCopyTest() {
    WriteFileBytes(source_ + L"\\b\\held", "new");
    WriteFileBytes(target_ + L"\\b\\held", "old");
  }

  // Copies while the file is held until the end of that wait.
  bool CopyWithRetries(int last_hindered_wait) {
    HeldFile lock(target_ + L"\\b\\held");
    const RecordedSleeps sleeps([&](int sleep) {
      EXPECT_EQ(log_.Records().back(), L"3|Copy fail, sleep 3 seconds and retry.");
      if (sleep == last_hindered_wait) {
        lock.Release();
      }
    });

    const bool is_copied = copy_.CopyWithRetries(target_, source_, kReplacing);

    EXPECT_EQ(sleeps.Milliseconds(),
              std::vector<DWORD>(static_cast<std::size_t>(last_hindered_wait), 3000));
    return is_copied;
  }

  // The records of so many failed attempts, and of how the copy ended.
  static Lines Records(int failures, const Lines& end) {
    Lines records;
    for (int number = 0; number < failures; ++number) {
      records.insert(records.end(), {FolderLine(), DeletionLine(L"\\b"), FolderLine(L"\\b"),
                                     FileLine(L"\\b\\held"), FailureLine(32),
                                     L"3|Copy fail, sleep 3 seconds and retry."});
    }
    records.insert(records.end(), end.begin(), end.end());
    return records;
  }
};

TEST_F(RetriedFolderCopyTest, SucceedsAtTheTenthAttempt) {
  EXPECT_TRUE(CopyWithRetries(9));

  EXPECT_EQ(log_.Records(), Records(9, {FolderLine(), DeletionLine(L"\\b"), FolderLine(L"\\b"),
                                        FileLine(L"\\b\\held"), L"2|Copy complete."}));
  EXPECT_EQ(ReadFileBytes(target_ + L"\\b\\held"), "new");
}

TEST_F(RetriedFolderCopyTest, GivesUpAfterTheTenthAttemptAndItsWait) {
  EXPECT_FALSE(CopyWithRetries(10));

  EXPECT_EQ(log_.Records(), Records(10, {L"4|Fail to copy folder."}));
  EXPECT_EQ(failed_path_, target_ + L"\\b\\held");
}

}  // namespace
}  // namespace nhupdate_test
