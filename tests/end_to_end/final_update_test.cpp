#include "base/existence.h"
#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/log_source.h"
#include "tests/end_to_end/support/stand_in_process.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class FinalUpdateEndToEndTest : public EndToEndTest {
 protected:
  FinalUpdateEndToEndTest() { hub_.StageRelease(); }
};

TEST_F(FinalUpdateEndToEndTest, EndsWith10WhenNotElevated) {
  const ProgramRun run = RunUnelevated(L"-final_update");

  EXPECT_EQ(run.exit_code, 10U);
  EXPECT_EQ(Transcript(), UnelevatedStartUp() + R"(2|Function : Final Update
4|Process not been elevated for install.
)" + kConfigDeleted + "2|Return 10\n");
  EXPECT_EQ(DescribeProductKeys(), "");
}

TEST_F(FinalUpdateEndToEndTest, EndsWith1AndABoxWhenAnotherCopyCannotBeStopped) {
  hub_.PutStandIn(L"stubborn", hub_.Scratch() + L"\\Elsewhere\\NHUpdateManager.exe");
  const CStandInProcess stubborn(hub_.Scratch() + L"\\Elsewhere\\NHUpdateManager.exe");
  NameProcess(stubborn.Id(), "stubborn");

  const ProgramRun run = Run(L"-final_update");

  EXPECT_EQ(run.exit_code, 1U);
  EXPECT_EQ(Transcript(), StartUp() + R"(2|Function : Final Update
2|Target process NHUpdateManager.exe({stubborn}) found, terminate it.
2|Skip terminate current process NHUpdateManager.exe({pid}).
4|Process NHUpdateManager.exe({stubborn}) still found.
4|Fail to terminate NHUpdateManager.
4|Fail to stop associates.
)" + Grants() + TemporaryFolderRemoved() +
                              kConfigDeleted + "2|Return 1\n");
  ExpectErrorBox(run, kCloseManager);
  EXPECT_EQ(DescribeProductKeys(), "");
  EXPECT_THAT(GrantParameters(), testing::UnorderedElementsAreArray(ExpectedGrantParameters()));
}

TEST_F(FinalUpdateEndToEndTest, EndsAnotherCopyThatCanBeStopped) {
  // The release as it is would be too much to read here.
  RemoveTree(hub_.App());
  hub_.PutStandIn(L"file_holder", hub_.Scratch() + L"\\Elsewhere\\NHUpdateManager.exe");
  const CStandInProcess other(hub_.Scratch() + L"\\Elsewhere\\NHUpdateManager.exe",
                              L"\"" + hub_.Release() + L"\\NHHub.exe\" 7 60000");
  NameProcess(other.Id(), "other");

  const ProgramRun run = Run(L"-final_update");

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_FALSE(other.IsRunning());
  EXPECT_EQ(Transcript(), StartUp() + R"(2|Function : Final Update
2|Target process NHUpdateManager.exe({other}) found, terminate it.
2|Skip terminate current process NHUpdateManager.exe({pid}).
2|Stop associates OK.
)" + Grants() + R"(2|Delete OK : {base}\NHHub.exe
2|Delete OK : {base}\Version.txt
2|Copy folder from {base}\Updater\App to {base}
2|Copy complete.
2|Copy files OK.
)" + Registered() + TemporaryFolderRemoved() +
                              "2|Return 0\n");
}

TEST_F(FinalUpdateEndToEndTest, EndsWith2AndABoxWhenAnInstalledFileIsHeld) {
  const CHeldFile held(hub_.Base() + L"\\Version.txt");

  const ProgramRun run = Run(L"-final_update");

  EXPECT_EQ(run.exit_code, 2U);
  EXPECT_EQ(Transcript(), StartUp() + "2|Function : Final Update\n" + NoOtherManager() +
                              "2|Stop associates OK.\n" + Grants() +
                              R"(2|Delete OK : {base}\NHHub.exe
4|Fail to delete (32) : {base}\Version.txt
4|Fail to copy files.
)" + TemporaryFolderRemoved() +
                              kConfigDeleted + "2|Return 2\n");
  ExpectErrorBox(run, std::string(kCommonError) + "\n{base}\\Version.txt");
  EXPECT_FALSE(nhupdate::Exists(hub_.Updater() + L"\\Temp"));
  EXPECT_EQ(DescribeProductKeys(), "");
}

TEST_F(FinalUpdateEndToEndTest, EndsWith2AndABoxWhenAStagedFileIsHeld) {
  const CHeldFile held(hub_.App() + L"\\Version.txt", 0);

  const ProgramRun run = Run(L"-final_update");

  EXPECT_EQ(run.exit_code, 2U);
  EXPECT_EQ(Transcript(), StartUp() + "2|Function : Final Update\n" + NoOtherManager() +
                              "2|Stop associates OK.\n" + Grants() +
                              R"(2|Delete OK : {base}\NHHub.exe
2|Delete OK : {base}\Version.txt
2|Copy OK : {base}\Updater\App\NHHub.exe => {base}\NHHub.exe
4|Fail to copy (32) : {base}\Updater\App\Version.txt => {base}\Version.txt
4|Fail to copy files.
)" + TemporaryFolderRemoved() +
                              kConfigDeleted + "2|Return 2\n");
  ExpectErrorBox(run, std::string(kCommonError) + "\n{base}\\Version.txt");
  EXPECT_FALSE(nhupdate::Exists(hub_.Updater() + L"\\Temp"));
}

// The one run with a real retry: the file is free again while the program waits for 3 s.
TEST_F(FinalUpdateEndToEndTest, TriesAgainWhileAFileIsHeld) {
  CHeldFile held(hub_.Base() + L"\\Plugins\\Cameras\\cam.dll");

  const ProgramRun run = RunToTheEnd(
      {.executable = hub_.Manager(), .arguments = L"-final_update", .while_running = [&] {
         if (held.IsRunning() && LogHolds(hub_, "Copy fail, sleep 3 seconds")) {
           held.End();
         }
       }});

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_EQ(Transcript(), StartUp() + "2|Function : Final Update\n" + NoOtherManager() +
                              "2|Stop associates OK.\n" + Grants() + TopLevelFilesReplaced() +
                              CopyFailedAtTheCameras() + ReleaseCopied() + Registered() +
                              TemporaryFolderRemoved() + "2|Return 0\n");
  EXPECT_TRUE(run.boxes.empty());
}

TEST_F(FinalUpdateEndToEndTest, PassesTheRunningProgramsOwnFolderOver) {
  WriteFileBytes(hub_.Module() + L"\\own.txt", "stays");

  const ProgramRun run = Run(L"-final_update");

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_EQ(Transcript(), FinalUpdateRecords());
  EXPECT_EQ(DescribeTree(hub_.Module()), DescribeManager("", "1.0.0") + "own.txt = stays\n");
}

}  // namespace
}  // namespace nhupdate_test
