#include "base/existence.h"
#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/stand_in_process.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class InstallEndToEndTest : public EndToEndTest {
 protected:
  // What the sibling's updater downloads: a manager with a script of its own.
  void OfferNimbaCast(int install_result) const {
    const std::wstring release = hub_.Scratch() + L"\\Cast";
    const std::wstring manager = release + L"\\CSUpdateManager";
    hub_.PutStandIn(L"updater", manager + L"\\CSUpdateManager.exe");
    PutScript(manager);
    WriteTask(manager, L"-Install", {.exit_code = install_result});
    hub_.Script(L"NIMBACS", {.exit_code = 0, .stage = release});
  }

  // The copy of the installed product's updater, with nothing staged in it.
  static std::string CastUpdaterCopied() {
    return R"(2|Install NCS begin.
2|Copy folder from {base}\Updater to {root}\NimbaCast\Updater
2|Copy folder from {base}\Updater\Config to {root}\NimbaCast\Updater\Config
2|Copy file from {base}\Updater\Config\ut.ini to {root}\NimbaCast\Updater\Config\ut.ini
2|Copy file from {base}\Updater\Script.ini to {root}\NimbaCast\Updater\Script.ini
2|Copy folder from {base}\Updater\Temp to {root}\NimbaCast\Updater\Temp
2|Copy file from {base}\Updater\Updater.exe to {root}\NimbaCast\Updater\Updater.exe
)" +
           Launch("{root}\\NimbaCast\\Updater", "Updater.exe",
                  "-NoUI NIMBACS -SkipAdditionTasks -ExitWhenParentDie:{pid}") +
           "2|Launch updater success for download.\n";
  }

  // A whole installation with nothing staged, up to NimbaCast's own part of it.
  static std::string InstalledUpToNimbaCast() {
    return StartUp() + "2|Function : Install\n" + NoOtherManager() + "2|Stop associates OK.\n" +
           Grants() +
           R"(2|Delete OK : {base}\NHHub.exe
2|Delete OK : {base}\Version.txt
2|Copy folder from {base}\Updater\App to {base}
2|Copy complete.
2|Copy files OK.
)" + Registered() +
           CastUpdaterCopied() +
           R"(2|Updater exit = 0
2|Download success.
2|Copy folder from {root}\NimbaCast\Updater\App\CSUpdateManager to {root}\NimbaCast\CSUpdateManager
2|Copy file from {root}\NimbaCast\Updater\App\CSUpdateManager\CSUpdateManager.exe to {root}\NimbaCast\CSUpdateManager\CSUpdateManager.exe
2|Copy file from {root}\NimbaCast\Updater\App\CSUpdateManager\Script.ini to {root}\NimbaCast\CSUpdateManager\Script.ini
)" + Launch("{root}\\NimbaCast\\CSUpdateManager", "CSUpdateManager.exe", "-Install") +
           R"(2|Launch CSUpdateManager success for install.
)";
  }

  static std::string NimbaDesk() { return "2|Install ND begin.\n2|Install ND end.\n"; }
};

TEST_F(InstallEndToEndTest, EndsWith10WhenNotElevated) {
  hub_.StageRelease();

  const ProgramRun run = RunUnelevated(L"-install");

  EXPECT_EQ(run.exit_code, 10U);
  EXPECT_EQ(Transcript(), UnelevatedStartUp() + R"(2|Function : Install
4|Process not been elevated for install.
2|Return 10
)");
  EXPECT_EQ(DescribeProductKeys(), "");
  EXPECT_TRUE(nhupdate::Exists(hub_.UpdaterConfig()));
}

TEST_F(InstallEndToEndTest, InstallsTheHubAndNimbaCast) {
  OfferNimbaCast(0);

  const ProgramRun run = Run(L"-install");

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_EQ(Transcript(), InstalledUpToNimbaCast() + R"(2|CSUpdateManager exit = 0
2|Install success.
2|Install NCS end.
)" + NimbaDesk() + "2|Return 0\n");
  EXPECT_EQ(
      Children(run),
      R"({root}\NimbaCast\Updater\Updater.exe in {root}\NimbaCast\Updater show 0 by {pid}: "{root}\NimbaCast\Updater\Updater.exe" -NoUI NIMBACS -SkipAdditionTasks -ExitWhenParentDie:{pid}
{root}\NimbaCast\CSUpdateManager\CSUpdateManager.exe in {root}\NimbaCast\CSUpdateManager show 0 by {pid}: "{root}\NimbaCast\CSUpdateManager\CSUpdateManager.exe" -Install
)");
  EXPECT_THAT(GrantParameters(), testing::UnorderedElementsAreArray(ExpectedGrantParameters()));
  EXPECT_EQ(DescribeProductKeys(), ExpectedProductKeys(hub_));
  EXPECT_TRUE(run.boxes.empty());
}

TEST_F(InstallEndToEndTest, EndsWith0WhenNimbaCastCannotBeInstalled) {
  OfferNimbaCast(9);

  const ProgramRun run = Run(L"-install");

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_EQ(Transcript(), InstalledUpToNimbaCast() + R"(2|CSUpdateManager exit = 9
4|Install failed.
)" + NimbaDesk() + "2|Return 0\n");
}

TEST_F(InstallEndToEndTest, EndsWith1AndABoxWhenAnotherCopyCannotBeStopped) {
  hub_.Script(L"NIMBACS", {.exit_code = 4});
  hub_.PutStandIn(L"stubborn", hub_.Scratch() + L"\\Elsewhere\\NHUpdateManager.exe");
  const CStandInProcess stubborn(hub_.Scratch() + L"\\Elsewhere\\NHUpdateManager.exe");
  NameProcess(stubborn.Id(), "stubborn");

  const ProgramRun run = Run(L"-install");

  EXPECT_EQ(run.exit_code, 1U);
  EXPECT_EQ(Transcript(), StartUp() + R"(2|Function : Install
2|Target process NHUpdateManager.exe({stubborn}) found, terminate it.
2|Skip terminate current process NHUpdateManager.exe({pid}).
4|Process NHUpdateManager.exe({stubborn}) still found.
4|Fail to terminate NHUpdateManager.
4|Fail to stop associates.
)" + Grants() + CastUpdaterCopied() +
                              R"(2|Updater exit = 4
4|Download failed.
)" + NimbaDesk() + "2|Return 1\n");
  ExpectErrorBox(run, kCloseManager);
  EXPECT_EQ(DescribeProductKeys(), "");
  EXPECT_TRUE(nhupdate::Exists(hub_.Base() + L"\\NHHub.exe"));
  EXPECT_TRUE(nhupdate::Exists(hub_.UpdaterConfig()));
}

TEST_F(InstallEndToEndTest, EndsWith2AndABoxWhenAnInstalledFileIsHeld) {
  hub_.Script(L"NIMBACS", {.exit_code = 0});
  const CHeldFile held(hub_.Base() + L"\\NHHub.exe");

  const ProgramRun run = Run(L"-install");

  EXPECT_EQ(run.exit_code, 2U);
  EXPECT_EQ(
      Transcript(),
      StartUp() + "2|Function : Install\n" + NoOtherManager() + "2|Stop associates OK.\n" +
          Grants() +
          R"(4|Fail to delete (32) : {base}\NHHub.exe
4|Fail to copy files.
)" + CastUpdaterCopied() +
          R"(2|Updater exit = 0
2|Download success.
2|Copy folder from {root}\NimbaCast\Updater\App\CSUpdateManager to {root}\NimbaCast\CSUpdateManager
)" + Launch("{root}\\NimbaCast\\CSUpdateManager", "CSUpdateManager.exe", "-Install") +
          R"(4|CSUpdateManager.exe not found : {root}\NimbaCast\CSUpdateManager\CSUpdateManager.exe
)" + NimbaDesk() +
          "2|Return 2\n");
  ExpectErrorBox(run, std::string(kCommonError) + "\n{base}\\NHHub.exe");
  EXPECT_EQ(DescribeProductKeys(), "");
}

}  // namespace
}  // namespace nhupdate_test
