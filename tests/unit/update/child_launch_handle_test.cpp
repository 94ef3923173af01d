// When the handle of a started process is closed, and when it is not.

#include <gtest/gtest.h>

#include "tests/unit/update/workflow_test.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

class LaunchedProcessHandlingTest : public WorkflowTest {};

TEST_F(LaunchedProcessHandlingTest, ClosesAtOnceWhatIsNotWaitedFor) {
  const nhupdate::ChildLaunch* launches[] = {
      &nhupdate::kBackgroundDownload, &nhupdate::kStartSelfUpdate, &nhupdate::kStartFinalUpdate};
  AddFile(L"\\Place\\Updater.exe");
  AddFile(L"\\Place\\NHUpdateManager.exe");
  for (const nhupdate::ChildLaunch* launch : launches) {
    ScriptedShell shell({EndsWith(0)});

    const nhupdate::LaunchOutcome outcome =
        nhupdate::Launch(*launch, product_.Base() + L"\\Place", Manager().Records());

    EXPECT_THAT(shell.Events(), ElementsAre("launch 1", "close 1"));
    EXPECT_FALSE(outcome.process.IsValid());
  }
}

TEST_F(LaunchedProcessHandlingTest, WaitsWithoutLimitAndKeepsTheProcessAsLongAsTheOutcome) {
  const nhupdate::ChildLaunch* launches[] = {
      &nhupdate::kCheckForUpdate, &nhupdate::kCheckForUpdater,   &nhupdate::kUpdateUpdater,
      &nhupdate::kUpdateProduct,  &nhupdate::kDownloadNimbaCast, &nhupdate::kInstallNimbaCast};
  AddFile(L"\\Place\\Updater.exe");
  AddFile(L"\\Place\\CSUpdateManager.exe");
  for (const nhupdate::ChildLaunch* launch : launches) {
    ScriptedShell shell({EndsWith(0)});
    {
      const nhupdate::LaunchOutcome outcome =
          nhupdate::Launch(*launch, product_.Base() + L"\\Place", Manager().Records());

      EXPECT_THAT(shell.Events(), ElementsAre("launch 1", "wait 1 for ever", "exit code 1"));
    }
    EXPECT_EQ(shell.Events().back(), "close 1");
  }
}

TEST_F(LaunchedProcessHandlingTest, ClosesTheCheckBeforeTheDownload) {
  AddUpdater();
  ScriptedShell shell({EndsWith(0), EndsWith(0)});

  std::ignore = Manager().CheckAndDownload();

  EXPECT_THAT(shell.Events(), ElementsAre("launch 1", "wait 1 for ever", "exit code 1", "close 1",
                                          "launch 2", "close 2"));
}

TEST_F(LaunchedProcessHandlingTest, ClosesACheckWhoseExitCodeCannotBeRead) {
  AddUpdater();
  ScriptedShell shell({EndsUnreadably()});

  std::ignore = Manager().CheckAndDownload();

  EXPECT_THAT(shell.Events(), ElementsAre("launch 1", "wait 1 for ever", "exit code 1", "close 1"));
}

TEST_F(LaunchedProcessHandlingTest, ClosesEveryProcessOfAnUpdateBeforeTheNext) {
  AddUpdater();
  AddFile(L"\\Updater\\App\\NHUpdateManager\\NHUpdateManager.exe");
  ScriptedShell shell({EndsWith(0), EndsWith(0), EndsWith(0), EndsWith(0)});

  std::ignore = Manager().Update();

  EXPECT_THAT(shell.Events(),
              ElementsAre("launch 1", "wait 1 for ever", "exit code 1", "close 1",  //
                          "launch 2", "wait 2 for ever", "exit code 2", "close 2",  //
                          "launch 3", "wait 3 for ever", "exit code 3", "close 3",  //
                          "launch 4", "close 4"));
}

TEST_F(LaunchedProcessHandlingTest, LeavesAFailedUpdateOfTheProductOpen) {
  AddUpdater();
  ScriptedShell shell({EndsWith(1), EndsWith(9)});

  std::ignore = Manager().Update();

  EXPECT_THAT(shell.Events(), ElementsAre("launch 1", "wait 1 for ever", "exit code 1", "close 1",
                                          "launch 2", "wait 2 for ever", "exit code 2"));
  EXPECT_EQ(shell.OpenProcesses(), 1u);
}

TEST_F(LaunchedProcessHandlingTest, LeavesAFailedUpdateOfTheUpdaterOpen) {
  AddUpdater();
  ScriptedShell shell({EndsWith(0), EndsWith(9)});

  std::ignore = RefreshUpdater();

  EXPECT_THAT(shell.Events(), ElementsAre("launch 1", "wait 1 for ever", "exit code 1", "close 1",
                                          "launch 2", "wait 2 for ever", "exit code 2"));
  EXPECT_EQ(shell.OpenProcesses(), 1u);
}

TEST_F(LaunchedProcessHandlingTest, ClosesAnUpdateWhoseExitCodeCannotBeRead) {
  AddUpdater();
  AddFile(L"\\Updater\\App\\NHUpdateManager\\NHUpdateManager.exe");
  ScriptedShell shell({EndsWith(0), EndsUnreadably(), EndsUnreadably(), EndsWith(0)});

  std::ignore = Manager().Update();

  EXPECT_EQ(shell.OpenProcesses(), 0u);
}

TEST_F(LaunchedProcessHandlingTest, ClosesFailedRunsOfTheNimbaCastInstallation) {
  struct Case {
    std::vector<ShellAnswer> script;
  };
  const Case cases[] = {
      {{EndsWith(0), EndsWith(0)}}, {{EndsWith(5)}}, {{EndsWith(0), EndsWith(5)}}};
  AddUpdater();
  AddFile(L"\\Updater\\App\\CSUpdateManager\\CSUpdateManager.exe");
  for (const Case& test_case : cases) {
    ScriptedShell shell(test_case.script);

    std::ignore = InstallNimbaCast();

    EXPECT_EQ(shell.OpenProcesses(), 0u);
    EXPECT_EQ(shell.Events().back(), "close " + std::to_string(test_case.script.size()));
  }
}

}  // namespace
}  // namespace nhupdate_test
