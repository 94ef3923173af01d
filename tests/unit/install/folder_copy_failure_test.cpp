// Where the folder copy ends, what it says of it, and how it is tried again.

#include <gmock/gmock.h>

#include <initializer_list>

#include "base/existence.h"
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
using testing::IsEmpty;

using HinderedFolderCopyTest = FolderCopyTest;

// Windows says 267 about a file in the place of a folder, other systems say it otherwise.
TEST_F(HinderedFolderCopyTest, TakesASourceForMissingOnlyWhenThereIsNoFolder) {
  struct Case {
    DWORD error;
    bool is_missing;
  };
  constexpr Case kCases[] = {
      {ERROR_FILE_NOT_FOUND, true}, {ERROR_PATH_NOT_FOUND, true},     {ERROR_NO_MORE_FILES, true},
      {ERROR_DIRECTORY, true},      {ERROR_ACCESS_DENIED, false},     {ERROR_INVALID_NAME, false},
      {ERROR_NOT_READY, false},     {ERROR_SHARING_VIOLATION, false}, {ERROR_BAD_NETPATH, false},
  };
  for (const Case& example : kCases) {
    log_.ForgetRecords();
    FakeListing listing;
    listing.Forbid(source_, example.error);

    EXPECT_EQ(Copy(), example.is_missing) << example.error;

    EXPECT_EQ(log_.Records(), example.is_missing
                                  ? Lines{FolderLine()}
                                  : (Lines{FolderLine(), FailureLine(example.error)}));
    EXPECT_EQ(failed_path_, example.is_missing ? L"nothing yet" : target_) << example.error;
    failed_path_ = L"nothing yet";
  }
}

TEST_F(HinderedFolderCopyTest, TakesASourceThatIsNoFolderForAnEmptyOne) {
  WriteFileBytes(root_ + L"\\file", "x");
  for (const std::wstring& name : {std::wstring(L"none"), std::wstring(L"file")}) {
    log_.ForgetRecords();

    EXPECT_TRUE(copy_.Copy(root_ + L"\\to " + name, root_ + L"\\" + name, kReplacing));

    EXPECT_THAT(log_.Records(),
                ElementsAre(L"2|Copy folder from {root}\\" + name + L" to {root}\\to " + name));
    EXPECT_TRUE(Exists(root_ + L"\\to " + name));
  }
}

// It was there a moment ago, when the folder around it was listed.
TEST_F(HinderedFolderCopyTest, EndsAtASubFolderThatCannotBeListed) {
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  WriteFileBytes(source_ + L"\\z.txt", "Z");
  for (const DWORD error : std::initializer_list<DWORD>{
           ERROR_PATH_NOT_FOUND, ERROR_DIRECTORY, ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION}) {
    log_.ForgetRecords();
    FakeListing listing;
    listing.Forbid(source_ + L"\\b", error);

    EXPECT_FALSE(Copy());

    EXPECT_THAT(log_.Records(), ElementsAre(FolderLine(), FolderLine(L"\\b"), FailureLine(error)));
    EXPECT_EQ(failed_path_, target_ + L"\\b");
    EXPECT_THAT(ListTree(target_), ElementsAre(L"b\\"));
  }
}

// Some file systems list no "." and "..", so there is nothing to be found.
TEST_F(HinderedFolderCopyTest, GoesOnBehindASubFolderWithoutAnyEntry) {
  CreateFolders(source_ + L"\\b");
  WriteFileBytes(source_ + L"\\z.txt", "Z");
  FakeListing listing;
  listing.Forbid(source_ + L"\\b", ERROR_FILE_NOT_FOUND);

  EXPECT_TRUE(Copy());

  EXPECT_THAT(ListTree(target_), ElementsAre(L"b\\", L"z.txt"));
}

// It could be exchanged for a link while it is walked.
TEST_F(HinderedFolderCopyTest, EndsAtASubFolderThatCannotBeHeld) {
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  const nhupdate::UniqueFile movable(::CreateFileW(
      (source_ + L"\\b").c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));

  EXPECT_FALSE(Copy());

  EXPECT_THAT(log_.Records(), ElementsAre(FolderLine(), FolderLine(L"\\b"), FailureLine(32)));
}

// It may have become a link since it was listed.
TEST_F(HinderedFolderCopyTest, EndsAtASubFolderThatCannotBeAskedWhatItIs) {
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  int questions = 0;
  INTERPOSER(GetFileInformationByHandleEx) information(
      [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* answer, DWORD size) -> BOOL {
        if (++questions == 1) {  // that is for the destination's
          return information.Original()(file, kind, answer, size);
        }
        ::SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
      });

  EXPECT_FALSE(Copy());

  EXPECT_THAT(log_.Records(), ElementsAre(FolderLine(), FolderLine(L"\\b"), FailureLine(1920)));
  EXPECT_EQ(failed_path_, target_ + L"\\b");
}

TEST_F(HinderedFolderCopyTest, EndsWhereAListingBreaksOff) {
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  FakeListing listing;
  listing.BreakOff(source_ + L"\\b", ERROR_NETNAME_DELETED);

  EXPECT_FALSE(Copy());

  EXPECT_THAT(log_.Records(), ElementsAre(FolderLine(), FolderLine(L"\\b"), FailureLine(64)));
  EXPECT_EQ(failed_path_, target_ + L"\\b");
}

TEST_F(HinderedFolderCopyTest, EndsAtTheFirstFailedFileAtAnyDepth) {
  for (const wchar_t* name : {L"\\a.txt", L"\\b\\held.txt", L"\\b\\next.txt", L"\\z.txt"}) {
    WriteFileBytes(source_ + name, "x");
  }
  HeldFile lock(source_ + L"\\b\\held.txt");

  EXPECT_FALSE(Copy({.log_details = false}));
  EXPECT_THAT(log_.Records(), IsEmpty());
  EXPECT_FALSE(Copy());

  lock.Release();
  EXPECT_THAT(log_.Records(), ElementsAre(FolderLine(), FileLine(L"\\a.txt"), FolderLine(L"\\b"),
                                          FileLine(L"\\b\\held.txt"), FailureLine(32)));
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

  EXPECT_FALSE(Copy());

  EXPECT_THAT(log_.Records(), ElementsAre(FolderLine(), FileLine(L"\\a"), FailureLine(5)));
  EXPECT_EQ(ReadFileBytes(target_ + L"\\a"), "old");
}

TEST_F(HinderedFolderCopyTest, EndsWhereAFolderOfTheDestinationHasTheFilesName) {
  WriteFileBytes(source_ + L"\\a", "A");
  WriteFileBytes(target_ + L"\\a\\inner", "I");

  EXPECT_FALSE(Copy(kReplacing));

  EXPECT_THAT(log_.Records(), ElementsAre(FolderLine(), FileLine(L"\\a"), FailureLine(5)));
  EXPECT_TRUE(Exists(target_ + L"\\a\\inner"));
}

TEST_F(HinderedFolderCopyTest, EndsWhereAFileOfTheDestinationHasTheFoldersName) {
  WriteFileBytes(source_ + L"\\a\\inner", "I");
  WriteFileBytes(target_ + L"\\a", "A");

  EXPECT_FALSE(Copy(kReplacing));

  EXPECT_THAT(log_.Records(), ElementsAre(FolderLine(), DeletionLine(L"\\a"), FolderLine(L"\\a"),
                                          FileLine(L"\\a\\inner"), FailureLine(3)));
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

  // What the file stays held for, and how it ends.
  static Lines Attempts(int failures, const Lines& end) {
    const Lines attempt = {FolderLine(), DeletionLine(L"\\b"), FolderLine(L"\\b"),
                           FileLine(L"\\b\\held")};
    Lines records;
    for (int number = 0; number < failures; ++number) {
      records.insert(records.end(), attempt.begin(), attempt.end());
      records.insert(records.end(), {FailureLine(32), L"3|Copy fail, sleep 3 seconds and retry."});
    }
    if (failures < 10) {
      records.insert(records.end(), attempt.begin(), attempt.end());
    }
    records.insert(records.end(), end.begin(), end.end());
    return records;
  }
};

TEST_F(RetriedFolderCopyTest, SucceedsAtTheTenthAttempt) {
  HeldFile lock(target_ + L"\\b\\held");
  const RecordedSleeps sleeps([&](int sleep) {
    if (sleep == 9) {
      lock.Release();
    }
  });

  EXPECT_TRUE(copy_.CopyWithRetries(target_, source_, kReplacing));

  EXPECT_EQ(log_.Records(), Attempts(9, {L"2|Copy complete."}));
  EXPECT_EQ(sleeps.Milliseconds(), std::vector<DWORD>(9, 3000));
  EXPECT_EQ(ReadFileBytes(target_ + L"\\b\\held"), "new");
}

TEST_F(RetriedFolderCopyTest, GivesUpAfterTheTenthAttemptAndItsWait) {
  HeldFile lock(target_ + L"\\b\\held");
  const RecordedSleeps sleeps([&](int sleep) {
    if (sleep == 10) {
      lock.Release();  // too late
    }
  });

  EXPECT_FALSE(copy_.CopyWithRetries(target_, source_, kReplacing));

  EXPECT_EQ(log_.Records(), Attempts(10, {L"4|Fail to copy folder."}));
  EXPECT_EQ(sleeps.Milliseconds(), std::vector<DWORD>(10, 3000));
  EXPECT_EQ(failed_path_, target_ + L"\\b\\held");
}

}  // namespace
}  // namespace nhupdate_test
