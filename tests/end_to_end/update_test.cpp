#include "base/existence.h"
#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/stand_in_process.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class UpdateEndToEndTest : public EndToEndTest {
 protected:
  UpdateEndToEndTest() {
    hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
    hub_.Script(L"NIMBAHUB", {.exit_code = 0});
  }

  static std::string Updated() {
    return LaunchHubUpdate() + "2|Launch updater success for update.\n2|Updater exit = 0\n";
  }
};

TEST_F(UpdateEndToEndTest, EndsWith10WhenNotElevated) {
  const ProgramRun run = RunUnelevated(L"/UPDATE");

  EXPECT_EQ(run.exit_code, 10U);
  EXPECT_EQ(Transcript(), UnelevatedStartUp() + R"(2|Function : Update
4|Process not been elevated for install.
)" + kConfigDeleted + "2|Return 10\n");
  EXPECT_FALSE(nhupdate::Exists(hub_.UpdaterConfig()));
  EXPECT_EQ(Children(run), "");
  EXPECT_TRUE(run.boxes.empty());
}

TEST_F(UpdateEndToEndTest, EndsWith13AndABoxWhenTheUpdaterFails) {
  hub_.Script(L"NIMBAHUB", {.exit_code = -5});

  const ProgramRun run = Run(L"-update");

  EXPECT_EQ(run.exit_code, 13U);
  EXPECT_EQ(Transcript(), StartUp() + RefreshFoundNothing() + LaunchHubUpdate() +
                              R"(2|Launch updater success for update.
2|Updater exit = -5
2|Update fail.
)" + kConfigDeleted + "2|Return 13\n");
  ExpectErrorBox(run, kCommonError);
  EXPECT_FALSE(nhupdate::Exists(hub_.UpdaterConfig()));
}

TEST_F(UpdateEndToEndTest, EndsWith14WithoutAnUpdater) {
  ::DeleteFileW((hub_.Updater() + L"\\Updater.exe").c_str());

  const ProgramRun run = Run(L"-update");

  EXPECT_EQ(run.exit_code, 14U);
  EXPECT_EQ(Transcript(),
            StartUp() + RefreshCheck() + "4|Update.exe not found : {base}\\Updater\\Updater.exe\n" +
                LaunchHubUpdate() + "4|Update.exe not found : {base}\\Updater\\Updater.exe\n" +
                kConfigDeleted + "2|Return 14\n");
  EXPECT_TRUE(run.boxes.empty());
}

TEST_F(UpdateEndToEndTest, EndsWith14AndABoxWhenTheUpdaterCannotBeStarted) {
  const CHeldFile updater(hub_.Updater() + L"\\Updater.exe", 0);

  const ProgramRun run = Run(L"-update");

  EXPECT_EQ(run.exit_code, 14U);
  EXPECT_EQ(Transcript(), StartUp() + RefreshCheck() +
                              "4|Fail to launch updater for check : " + WithoutSharing() + R"(
2|Copy folder from {base}\Updater\NewUpdater to {base}\Updater
2|Copy complete.
2|Update updater complete.
)" + LaunchHubUpdate() + "4|Fail to launch updater for update : " +
                              WithoutSharing() + "\n" + kConfigDeleted + "2|Return 14\n");
  ExpectErrorBoxAfterTheShells(run, kCommonError);
}

TEST_F(UpdateEndToEndTest, EndsWith15WithoutABoxWhenNothingWasStaged) {
  const ProgramRun run = Run(L"-update");

  EXPECT_EQ(run.exit_code, 15U);
  EXPECT_EQ(
      Transcript(),
      StartUp() + RefreshFoundNothing() + Updated() + LaunchSelfUpdate() +
          R"(4|NHUpdateManager.exe not found : {base}\Updater\App\NHUpdateManager\NHUpdateManager.exe
)" + kConfigDeleted +
          "2|Return 15\n");
  EXPECT_TRUE(run.boxes.empty());
}

TEST_F(UpdateEndToEndTest, EndsWith16AndABoxWhenTheStagedProgramCannotBeStarted) {
  hub_.StageRelease();
  const CHeldFile staged(hub_.StagedManager(), 0);

  const ProgramRun run = Run(L"-update");

  EXPECT_EQ(run.exit_code, 16U);
  EXPECT_EQ(Transcript(), StartUp() + RefreshFoundNothing() + Updated() + LaunchSelfUpdate() +
                              "4|Fail to launch NHUpdateManager for self update : " +
                              WithoutSharing() + "\n" + kConfigDeleted + "2|Return 16\n");
  ExpectErrorBoxAfterTheShells(run, kCommonError);
}

TEST_F(UpdateEndToEndTest, EndsWith0AndKeepsTheConfigurationWhenTheNextStageWasStarted) {
  // Only this stage counts here: what it starts is a stand-in.
  hub_.PutStandIn(L"updater", hub_.StagedManager());
  PutScript(hub_.App() + L"\\NHUpdateManager");
  WriteTask(hub_.App() + L"\\NHUpdateManager", L"-self_update", {.exit_code = 77});

  const ProgramRun run = Run(L"-update");

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_EQ(Transcript(), StartUp() + RefreshFoundNothing() + Updated() + LaunchSelfUpdate() +
                              "2|Launch NHUpdateManager success for self update.\n2|Return 0\n");
  EXPECT_EQ(
      Children(run),
      R"({base}\Updater\Updater.exe in {base}\Updater show 0 by {pid}: "{base}\Updater\Updater.exe" -NoUI -CheckTask NIMBA_SOFTWARE com.corvane.windows.nimba_internal.new_updater -SkipAdditionTasks -ExitWhenParentDie:{pid}
{base}\Updater\Updater.exe in {base}\Updater show 0 by {pid}: "{base}\Updater\Updater.exe" NIMBAHUB -SkipAdditionTasks -KillBrothers -ExitWhenParentDie:{pid}
{base}\Updater\App\NHUpdateManager\NHUpdateManager.exe in {base}\Updater\App\NHUpdateManager show 0 by {pid}: "{base}\Updater\App\NHUpdateManager\NHUpdateManager.exe" -self_update
)");
  EXPECT_TRUE(nhupdate::Exists(hub_.UpdaterConfig()));
}

TEST_F(UpdateEndToEndTest, GoesOnWithTheOldUpdaterWhenTheNewOneFails) {
  hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 0});
  hub_.Script(L"NIMBA_SOFTWARE", {.exit_code = 3});

  const ProgramRun run = Run(L"-update");

  EXPECT_EQ(run.exit_code, 15U);
  EXPECT_EQ(
      Transcript(),
      StartUp() + RefreshCheck() + R"(2|Launch updater success for check.
2|Updater exit = 0
2|New updater available.
)" + LaunchUpdaterUpdate() +
          R"(2|Launch updater success for update.
2|Updater exit = 3
2|Update fail.
)" + Updated() +
          LaunchSelfUpdate() +
          R"(4|NHUpdateManager.exe not found : {base}\Updater\App\NHUpdateManager\NHUpdateManager.exe
)" + kConfigDeleted +
          "2|Return 15\n");
}

}  // namespace
}  // namespace nhupdate_test
