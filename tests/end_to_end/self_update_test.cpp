#include "base/existence.h"
#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/stand_in_process.h"

namespace nhupdate_test {
namespace {

class SelfUpdateEndToEndTest : public EndToEndTest {
 protected:
  SelfUpdateEndToEndTest() { hub_.StageRelease(); }
};

TEST_F(SelfUpdateEndToEndTest, EndsWith10WhenNotElevated) {
  const ProgramRun run = RunToTheEnd(
      {.executable = hub_.StagedManager(), .arguments = L"-self_update", .is_elevated = false});

  EXPECT_EQ(run.exit_code, 10U);
  EXPECT_EQ(Transcript(), UnelevatedStartUp(kStagedModule) + R"(2|Function : Self Update
4|Process not been elevated for install.
)" + kConfigDeleted + "2|Return 10\n");
  EXPECT_TRUE(run.boxes.empty());
}

TEST_F(SelfUpdateEndToEndTest, EndsWith15AndABoxWhenTheInstalledProgramIsMissing) {
  // A copy that runs under another name does not bring the program itself along.
  const std::wstring renamed = hub_.App() + L"\\NHUpdateManager\\Manager.exe";
  ASSERT_TRUE(::MoveFileW(hub_.StagedManager().c_str(), renamed.c_str()));
  ASSERT_TRUE(::DeleteFileW(hub_.Manager().c_str()));

  const ProgramRun run = RunToTheEnd({.executable = renamed, .arguments = L"-self_update"});

  EXPECT_EQ(run.exit_code, 15U);
  EXPECT_EQ(
      Transcript(),
      StartUp(kStagedModule) + "2|Function : Self Update\n" +
          "2|Target process NHUpdateManager.exe not found.\n" + SelfCopied("Manager.exe") +
          LaunchFinalUpdate() +
          R"(4|NHUpdateManager.exe not found for final update : {base}\NHUpdateManager\NHUpdateManager.exe
)" + kConfigDeleted +
          "2|Return 15\n");
  ExpectErrorBox(run, kCommonError);
  EXPECT_FALSE(nhupdate::Exists(hub_.UpdaterConfig()));
}

TEST_F(SelfUpdateEndToEndTest, EndsWith16AndABoxWhenTheInstalledProgramCannotBeStarted) {
  const std::wstring renamed = hub_.App() + L"\\NHUpdateManager\\Manager.exe";
  ASSERT_TRUE(::MoveFileW(hub_.StagedManager().c_str(), renamed.c_str()));
  const CHeldFile installed(hub_.Manager(), 0);

  const ProgramRun run = RunToTheEnd({.executable = renamed, .arguments = L"-self_update"});

  EXPECT_EQ(run.exit_code, 16U);
  EXPECT_EQ(Transcript(), StartUp(kStagedModule) + "2|Function : Self Update\n" +
                              "2|Target process NHUpdateManager.exe not found.\n" +
                              SelfCopied("Manager.exe") + LaunchFinalUpdate() +
                              "4|Fail to launch NHUpdateManager for final update : " +
                              WithoutSharing() + "\n" + kConfigDeleted + "2|Return 16\n");
  ExpectErrorBoxAfterTheShells(run, kCommonError);
}

TEST_F(SelfUpdateEndToEndTest, EndsWith16AndABoxWhenAnotherCopyCannotBeStopped) {
  const std::wstring other = hub_.Scratch() + L"\\Elsewhere\\nhupdatemanager.EXE";
  hub_.PutStandIn(L"stubborn", other);
  const CStandInProcess stubborn(other);
  NameProcess(stubborn.Id(), "stubborn");

  const ProgramRun run = RunStaged(L"-self_update");

  EXPECT_EQ(run.exit_code, 16U);
  EXPECT_EQ(Transcript(), StartUp(kStagedModule) + R"(2|Function : Self Update
2|Target process nhupdatemanager.EXE({stubborn}) found, terminate it.
2|Skip terminate current process NHUpdateManager.exe({pid}).
4|Process nhupdatemanager.EXE({stubborn}) still found.
)" + kConfigDeleted + "2|Return 16\n");
  ExpectErrorBox(run, kCloseManager);
  EXPECT_TRUE(stubborn.IsRunning());
}

}  // namespace
}  // namespace nhupdate_test
