#include <gtest/gtest.h>

#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

const Lines kBeginLine = {L"2|Begin update updater."};
const Lines kCheckedLine = {L"2|Launch updater success for check."};

// One file waits to be copied.
const Lines kCopyLines = {
    L"2|Copy folder from {root}\\Nimba Hub\\Updater\\NewUpdater to {root}\\Nimba Hub\\Updater",
    L"2|Copy file from {root}\\Nimba Hub\\Updater\\NewUpdater\\Updater.exe to "
    L"{root}\\Nimba Hub\\Updater\\Updater.exe",
};
const Lines kCopiedLines = {L"2|Copy complete.", L"2|Update updater complete."};

class UpdaterRefreshTest : public WorkflowTest {
 protected:
  UpdaterRefreshTest() {
    WriteFileBytes(product_.Base() + L"\\Updater\\Updater.exe", "old");
    WriteFileBytes(product_.Base() + L"\\Updater\\NewUpdater\\Updater.exe", "new");
  }

  std::string InstalledUpdater() {
    return ReadFileBytes(product_.Base() + L"\\Updater\\Updater.exe");
  }
};

TEST_F(UpdaterRefreshTest, EndsWithoutAnUpdater) {
  ::DeleteFileW((product_.Base() + L"\\Updater\\Updater.exe").c_str());
  ScriptedShell shell({});

  const int result = Manager().RefreshUpdater();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            Join({kBeginLine,
                  CheckForUpdaterLines(),
                  {L"4|Update.exe not found : {root}\\Nimba Hub\\Updater\\Updater.exe"}}));
}

struct RefreshCase {
  const char* name;
  ShellAnswer answer;
  Lines lines;
};

void PrintTo(const RefreshCase& test_case, std::ostream* stream) {
  *stream << test_case.name;
}

// Checks that lead to no update of the updater.
const RefreshCase kCheckCases[] = {
    {"NoNewUpdater",
     EndsWith(1),
     {L"2|Launch updater success for check.", L"2|Updater exit = 1",
      L"2|No new updater available."}},
    {"Error2",
     EndsWith(2),
     {L"2|Launch updater success for check.", L"2|Updater exit = 2", L"4|Updater error."}},
    {"ErrorMinus1",
     EndsWith(0xFFFFFFFF),
     {L"2|Launch updater success for check.", L"2|Updater exit = -1", L"4|Updater error."}},
    {"Unreadable", EndsUnreadably(), {L"2|Launch updater success for check."}},
    {"NotLaunched", FailsWith(ERROR_FILE_NOT_FOUND), {L"4|Fail to launch updater for check : 2"}},
};

class RefreshAfterCheckTest : public UpdaterRefreshTest,
                              public testing::WithParamInterface<RefreshCase> {};

TEST_P(RefreshAfterCheckTest, CopiesWhatWasFetchedEarlier) {
  ScriptedShell shell({GetParam().answer});

  const int result = Manager().RefreshUpdater();

  EXPECT_EQ(result, 1);
  EXPECT_EQ(InstalledUpdater(), "new");
  EXPECT_EQ(product_.Transcript(),
            Join({kBeginLine, CheckForUpdaterLines(), GetParam().lines, kCopyLines, kCopiedLines}));
}

INSTANTIATE_TEST_SUITE_P(AllChecks, RefreshAfterCheckTest, testing::ValuesIn(kCheckCases),
                         [](const auto& row) { return std::string(row.param.name); });

// Updates of the updater after which the copy is made.
const RefreshCase kUpdateCases[] = {
    {"Success", EndsWith(0), {L"2|Launch updater success for update.", L"2|Updater exit = 0"}},
    {"Unreadable", EndsUnreadably(), {L"2|Launch updater success for update."}},
};

class RefreshAfterUpdateTest : public UpdaterRefreshTest,
                               public testing::WithParamInterface<RefreshCase> {};

TEST_P(RefreshAfterUpdateTest, CopiesTheNewUpdater) {
  ScriptedShell shell({EndsWith(0), GetParam().answer});

  const int result = Manager().RefreshUpdater();

  EXPECT_EQ(result, 1);
  EXPECT_EQ(InstalledUpdater(), "new");
  EXPECT_EQ(product_.Transcript(), Join({kBeginLine,
                                         CheckForUpdaterLines(),
                                         kCheckedLine,
                                         {L"2|Updater exit = 0", L"2|New updater available."},
                                         UpdateUpdaterLines(),
                                         GetParam().lines,
                                         kCopyLines,
                                         kCopiedLines}));
}

INSTANTIATE_TEST_SUITE_P(AllUpdates, RefreshAfterUpdateTest, testing::ValuesIn(kUpdateCases),
                         [](const auto& row) { return std::string(row.param.name); });

// Updates of the updater after which nothing is copied.
const RefreshCase kFailedUpdateCases[] = {
    {"Failed",
     EndsWith(1),
     {L"2|Launch updater success for update.", L"2|Updater exit = 1", L"2|Update fail."}},
    {"SmallestCode",
     EndsWith(0x80000000),
     {L"2|Launch updater success for update.", L"2|Updater exit = -2147483648", L"2|Update fail."}},
    {"NotLaunched", FailsWith(ERROR_ACCESS_DENIED), {L"4|Fail to launch updater for update : 5"}},
};

class RefreshAfterFailedUpdateTest : public UpdaterRefreshTest,
                                     public testing::WithParamInterface<RefreshCase> {};

TEST_P(RefreshAfterFailedUpdateTest, CopiesNothing) {
  ScriptedShell shell({EndsWith(0), GetParam().answer});

  const int result = Manager().RefreshUpdater();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(InstalledUpdater(), "old");
  EXPECT_EQ(product_.Transcript(), Join({kBeginLine,
                                         CheckForUpdaterLines(),
                                         kCheckedLine,
                                         {L"2|Updater exit = 0", L"2|New updater available."},
                                         UpdateUpdaterLines(),
                                         GetParam().lines}));
}

INSTANTIATE_TEST_SUITE_P(AllUpdates, RefreshAfterFailedUpdateTest,
                         testing::ValuesIn(kFailedUpdateCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(UpdaterRefreshTest, EndsWhenTheUpdaterIsGoneBeforeItsUpdate) {
  ScriptedShell shell({EndsWith(0)});
  Interposer<decltype(::WaitForSingleObject)> wait(
      "WaitForSingleObject", [&](HANDLE handle, DWORD milliseconds) {
        ::DeleteFileW((product_.Base() + L"\\Updater\\Updater.exe").c_str());
        return wait.Original()(handle, milliseconds);
      });

  const int result = Manager().RefreshUpdater();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript().back(),
            L"4|Update.exe not found : {root}\\Nimba Hub\\Updater\\Updater.exe");
}

TEST_F(UpdaterRefreshTest, CopiesAgainUntilItSucceeds) {
  ScriptedShell shell({EndsWith(1)});
  Interposer<decltype(::CopyFileW)> copy(
      "CopyFileW", [&](const wchar_t* source, const wchar_t* target, BOOL fail_if_exists) -> BOOL {
        if (copy.Calls() == 10) {
          return copy.Original()(source, target, fail_if_exists);
        }
        ::SetLastError(ERROR_SHARING_VIOLATION);
        return FALSE;
      });

  const int result = Manager().RefreshUpdater();

  EXPECT_EQ(result, 1);
  EXPECT_EQ(InstalledUpdater(), "new");
  EXPECT_EQ(sleeps_.Milliseconds(), std::vector<DWORD>(9, 3000));
}

TEST_F(UpdaterRefreshTest, GivesUpAfterTenFailedCopiesAndTheirSleeps) {
  ScriptedShell shell({EndsWith(1)});
  Interposer<decltype(::CopyFileW)> copy("CopyFileW",
                                         [](const wchar_t*, const wchar_t*, BOOL) -> BOOL {
                                           ::SetLastError(ERROR_SHARING_VIOLATION);
                                           return FALSE;
                                         });

  const int result = Manager().RefreshUpdater();

  Lines expected = Join({kBeginLine,
                         CheckForUpdaterLines(),
                         kCheckedLine,
                         {L"2|Updater exit = 1", L"2|No new updater available."}});
  for (int attempt = 0; attempt < 10; ++attempt) {
    expected = Join({expected,
                     kCopyLines,
                     {L"4|Fail to copy file = 32", L"3|Copy fail, sleep 3 seconds and retry."}});
  }
  expected.push_back(L"4|Fail to copy folder.");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(sleeps_.Milliseconds(), std::vector<DWORD>(10, 3000));
  EXPECT_EQ(product_.Transcript(), expected);
}

TEST_F(UpdaterRefreshTest, NeverDeletesSubFoldersOfTheUpdater) {
  AddFile(L"\\Updater\\NewUpdater\\Data\\new.txt");
  AddFile(L"\\Updater\\Data\\old.txt");
  ScriptedShell shell({EndsWith(1)});

  std::ignore = Manager().RefreshUpdater();

  EXPECT_THAT(ListTree(product_.Base() + L"\\Updater\\Data"),
              testing::ElementsAre(L"new.txt", L"old.txt"));
}

TEST_F(UpdaterRefreshTest, ShowsNoBox) {
  ScriptedShell shell({EndsWith(0), EndsWith(9)});

  std::ignore = Manager().RefreshUpdater();

  EXPECT_TRUE(boxes_.Shown().empty());
}

}  // namespace
}  // namespace nhupdate_test
