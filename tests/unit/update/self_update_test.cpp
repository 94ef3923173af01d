#include <gtest/gtest.h>

#include "base/existence.h"
#include "base/paths.h"
#include "tests/support/scripted_processes.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t kInstalledManager[] = L"\\NHUpdateManager\\NHUpdateManager.exe";

const Lines kStoppedLines = {L"2|Function : Self Update",
                             L"2|Target process NHUpdateManager.exe not found."};

// The staged copy consists of its executable, a string file and the log library.
Lines CopyLines() {
  const std::wstring from = L"{root}\\Nimba Hub\\Updater\\App\\NHUpdateManager";
  const std::wstring to = L"{root}\\Nimba Hub\\NHUpdateManager";
  const std::wstring text = L"\\Config\\NHUpdateManager.Default.json";
  return {
      L"2|Copy folder from " + from + L" to " + to,
      L"2|Delete Dir : " + to + L"\\Config",
      L"2|Copy folder from " + from + L"\\Config to " + to + L"\\Config",
      L"2|Copy file from " + from + text + L" to " + to + text,
      L"2|Copy file from " + from + L"\\NHUpdateManager.exe to " + to + L"\\NHUpdateManager.exe",
      L"2|Copy file from " + from + L"\\NSWLogDynamic64U.dll to " + to + L"\\NSWLogDynamic64U.dll",
  };
}

Lines StartFinalUpdateLines() {
  return LaunchLines(L"{root}\\Nimba Hub\\NHUpdateManager", L"\\NHUpdateManager.exe",
                     L"-final_update");
}

class SelfUpdateTest : public WorkflowTest {
 protected:
  SelfUpdateTest() : WorkflowTest({.module = L"\\Updater\\App\\NHUpdateManager"}) {
    AddFile(L"\\Updater\\App\\NHUpdateManager\\NHUpdateManager.exe");
  }

  ScriptedProcesses no_processes_;
};

TEST_F(SelfUpdateTest, ReplacesTheInstalledCopyAndStartsIt) {
  AddFile(L"\\NHUpdateManager\\Config\\old.json");
  ScriptedShell shell({EndsWith(0)});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(), Join({kStoppedLines,
                                         CopyLines(),
                                         {L"2|Copy NHUpdateManager success."},
                                         StartFinalUpdateLines(),
                                         {L"2|Launch NHUpdateManager success for final update."}}));
  EXPECT_THAT(ListTree(product_.Base() + L"\\NHUpdateManager"),
              ElementsAre(L"Config\\", L"Config\\NHUpdateManager.Default.json",
                          L"NHUpdateManager.exe", L"NSWLogDynamic64U.dll"));
  EXPECT_THAT(boxes_.Shown(), IsEmpty());
}

TEST_F(SelfUpdateTest, GivesStoppedProcessesASecondBeforeItCopies) {
  ScriptedShell shell({EndsWith(0)});
  std::vector<bool> was_copied;
  std::vector<DWORD> sleeps;
  Interposer<decltype(::Sleep)> sleep("Sleep", [&](DWORD milliseconds) {
    was_copied.push_back(nhupdate::Exists(product_.Base() + kInstalledManager));
    sleeps.push_back(milliseconds);
  });

  std::ignore = Manager().SelfUpdate();

  EXPECT_THAT(sleeps, ElementsAre(1000u));
  EXPECT_THAT(was_copied, ElementsAre(false));
}

TEST_F(SelfUpdateTest, StopsOtherCopiesButNotItself) {
  ScriptedProcesses processes({{4242, L"C:\\Elsewhere\\nhupdatemanager.EXE"},
                               {ScriptedShell::kProcessId, L"C:\\Here\\NHUpdateManager.exe"},
                               {4246, L"C:\\Elsewhere\\Other.exe"}});
  ScriptedShell shell({EndsWith(0)});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 0);
  EXPECT_THAT(processes.Running(), ElementsAre(ScriptedShell::kProcessId, 4246u));
  Lines first_records = product_.Transcript();
  first_records.resize(3);
  EXPECT_THAT(first_records,
              ElementsAre(L"2|Function : Self Update",
                          L"2|Target process nhupdatemanager.EXE(4242) found, terminate it.",
                          L"2|Skip terminate current process NHUpdateManager.exe({pid})."));
}

TEST_F(SelfUpdateTest, TellsTheUserToCloseACopyThatCannotBeStopped) {
  ScriptedProcesses processes(
      {{.id = 4242, .path = L"C:\\Elsewhere\\NHUpdateManager.exe", .refuses_to_end = true}});
  ScriptedShell shell({});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 16);
  EXPECT_EQ(product_.Transcript(),
            Lines({L"2|Function : Self Update",
                   L"2|Target process NHUpdateManager.exe(4242) found, terminate it.",
                   L"4|Process NHUpdateManager.exe(4242) still found."}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kNeedStopText)));
  EXPECT_THAT(sleeps_.Milliseconds(), IsEmpty());
}

TEST_F(SelfUpdateTest, CopiesUpToThreeTimes) {
  struct Case {
    int failures;
    std::vector<DWORD> sleeps;
  };
  const Case cases[] = {{1, {1000, 3000}}, {2, {1000, 3000, 3000}}};
  for (const Case& test_case : cases) {
    ScriptedShell shell({EndsWith(0)});
    RecordedSleeps sleeps;
    Interposer<decltype(::CopyFileW)> copy(
        "CopyFileW", [&](const wchar_t* source, const wchar_t* target, BOOL fail_if_exists) {
          if (copy.Calls() > test_case.failures) {
            return copy.Original()(source, target, fail_if_exists);
          }
          ::SetLastError(ERROR_SHARING_VIOLATION);
          return FALSE;
        });

    const int result = Manager().SelfUpdate();

    EXPECT_EQ(result, 0);
    EXPECT_EQ(sleeps.Milliseconds(), test_case.sleeps);
  }
}

TEST_F(SelfUpdateTest, GivesUpAfterThreeFailedCopiesAndTheirSleeps) {
  ScriptedShell shell({});
  Interposer<decltype(::CopyFileW)> copy("CopyFileW",
                                         [](const wchar_t*, const wchar_t*, BOOL) -> BOOL {
                                           ::SetLastError(ERROR_SHARING_VIOLATION);
                                           return FALSE;
                                         });

  const int result = Manager().SelfUpdate();

  Lines failed_copy = CopyLines();
  failed_copy.resize(4);
  const Lines failure = {L"4|Fail to copy file = 32",
                         L"3|Fail to copy NHUpdateManager, sleep and try again."};
  EXPECT_EQ(result, 16);
  EXPECT_EQ(product_.Transcript(), Join({kStoppedLines,
                                         failed_copy,
                                         failure,
                                         failed_copy,
                                         failure,
                                         failed_copy,
                                         failure,
                                         {L"4|Fail to copy NHUpdateManager finally."}}));
  EXPECT_THAT(sleeps_.Milliseconds(), ElementsAre(1000u, 3000u, 3000u, 3000u));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kCommonErrorText)));
}

TEST_F(SelfUpdateTest, TellsTheUserWhenTheNextStageIsMissing) {
  ::DeleteFileW((product_.Module() + L"\\NHUpdateManager.exe").c_str());
  ScriptedShell shell({});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 15);
  EXPECT_EQ(product_.Transcript().back(),
            L"4|NHUpdateManager.exe not found for final update : "
            L"{root}\\Nimba Hub\\NHUpdateManager\\NHUpdateManager.exe");
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kCommonErrorText)));
}

TEST_F(SelfUpdateTest, TellsTheUserWhenTheNextStageCannotBeLaunched) {
  ScriptedShell shell({FailsWith(ERROR_CANCELLED)});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 16);
  EXPECT_EQ(product_.Transcript().back(),
            L"4|Fail to launch NHUpdateManager for final update : 1223");
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kCommonErrorText)));
}

class SelfUpdateInTheWrongPlaceTest : public WorkflowTest {
 protected:
  // The installed copy, not the staged one.
  SelfUpdateInTheWrongPlaceTest() { AddFile(kInstalledManager); }

  ScriptedProcesses no_processes_;
};

TEST_F(SelfUpdateInTheWrongPlaceTest, CopiesThreeFoldersUpAllTheSame) {
  const std::wstring target = nhupdate::ParentFolder(product_.Root()) + L"\\NHUpdateManager";
  ScriptedShell shell({EndsWith(0)});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 0);
  ASSERT_EQ(shell.Launches().size(), 1u);
  EXPECT_EQ(shell.Launches()[0].file, target + L"\\NHUpdateManager.exe");
  EXPECT_TRUE(nhupdate::Exists(target + L"\\NHUpdateManager.exe"));
}

class SelfUpdateWithoutElevationTest : public WorkflowTest {
 protected:
  SelfUpdateWithoutElevationTest() : WorkflowTest({.elevated = false}) {}
};

TEST_F(SelfUpdateWithoutElevationTest, EndsBeforeAnythingIsStopped) {
  ScriptedProcesses processes({{4242, L"C:\\Elsewhere\\NHUpdateManager.exe"}});
  ScriptedShell shell({});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 10);
  EXPECT_EQ(product_.Transcript(),
            Lines({L"2|Function : Self Update", L"4|Process not been elevated for install."}));
  EXPECT_EQ(processes.Enumerations(), 0);
  EXPECT_THAT(sleeps_.Milliseconds(), IsEmpty());
  EXPECT_THAT(boxes_.Shown(), IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
