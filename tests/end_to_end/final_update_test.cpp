#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/stand_in_process.h"
#include "tests/end_to_end/support/utf8_text.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

constexpr char kConfigDeleted[] =
    "2|Updater config file delete ok : {base}\\Updater\\Config\\ut.ini\n";

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
)" + Grants() + R"(2|Remove empty folder in path : {base}
2|Remove empty folder : {base}\Updater\Temp
)" + kConfigDeleted + "2|Return 1\n");
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
2|Nimba Hub registry set.
2|NHUpdateManager crash dump folder set to : {data}\Corvane\NimbaSoftware\NimbaHub\Log
2|Update registry OK.
2|Remove empty folder in path : {base}
2|Remove empty folder : {base}\Updater\Temp
2|Return 0
)");
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
2|Remove empty folder in path : {base}
2|Remove empty folder : {base}\Updater\Temp
)" + kConfigDeleted + "2|Return 2\n");
  ASSERT_EQ(run.boxes.size(), 1U);
  EXPECT_EQ(hub_.WithPlaceholders(ToWide(run.boxes[0].text)),
            std::string(kCommonError) + "\n{base}\\Version.txt");
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
2|Remove empty folder in path : {base}
2|Remove empty folder : {base}\Updater\Temp
)" + kConfigDeleted + "2|Return 2\n");
  ASSERT_EQ(run.boxes.size(), 1U);
  EXPECT_EQ(hub_.WithPlaceholders(ToWide(run.boxes[0].text)),
            std::string(kCommonError) + "\n{base}\\Version.txt");
}

// The one run with a real retry: the file is free again before the second attempt, 3 s later.
TEST_F(FinalUpdateEndToEndTest, TriesAgainWhileAFileIsHeld) {
  const CHeldFile held(hub_.Base() + L"\\Plugins\\Cameras\\cam.dll", FILE_SHARE_READ, 2500);

  const ProgramRun run = Run(L"-final_update");

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_EQ(Transcript(), StartUp() + "2|Function : Final Update\n" + NoOtherManager() +
                              "2|Stop associates OK.\n" + Grants() +
                              R"(2|Delete OK : {base}\NHHub.exe
2|Delete OK : {base}\Version.txt
2|Copy OK : {base}\Updater\App\NHHub.exe => {base}\NHHub.exe
2|Copy OK : {base}\Updater\App\Version.txt => {base}\Version.txt
2|Copy folder from {base}\Updater\App to {base}
2|Copy file from {base}\Updater\App\NHHub.exe to {base}\NHHub.exe
2|Delete Dir : {base}\Plugins
2|Copy folder from {base}\Updater\App\Plugins to {base}\Plugins
2|Copy folder from {base}\Updater\App\Plugins\Cameras to {base}\Plugins\Cameras
2|Copy file from {base}\Updater\App\Plugins\Cameras\cam.dll to {base}\Plugins\Cameras\cam.dll
4|Fail to copy file = 32
3|Copy fail, sleep 3 seconds and retry.
2|Copy folder from {base}\Updater\App to {base}
2|Copy file from {base}\Updater\App\NHHub.exe to {base}\NHHub.exe
2|Delete Dir : {base}\Plugins
2|Copy folder from {base}\Updater\App\Plugins to {base}\Plugins
2|Copy folder from {base}\Updater\App\Plugins\Cameras to {base}\Plugins\Cameras
2|Copy file from {base}\Updater\App\Plugins\Cameras\cam.dll to {base}\Plugins\Cameras\cam.dll
2|Copy file from {base}\Updater\App\Plugins\sound.dll to {base}\Plugins\sound.dll
2|Copy file from {base}\Updater\App\Version.txt to {base}\Version.txt
2|Copy complete.
2|Copy files OK.
2|Nimba Hub registry set.
2|NHUpdateManager crash dump folder set to : {data}\Corvane\NimbaSoftware\NimbaHub\Log
2|Update registry OK.
2|Remove empty folder in path : {base}
2|Remove empty folder : {base}\Updater\Temp
2|Return 0
)");
  EXPECT_TRUE(run.boxes.empty());
}

TEST_F(FinalUpdateEndToEndTest, PassesTheRunningProgramsOwnFolderOver) {
  WriteFileBytes(hub_.Module() + L"\\own.txt", "stays");

  const ProgramRun run = Run(L"-final_update");

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_EQ(hub_.DescribeTree(hub_.Module()), R"(Config\
Config\NHUpdateManager.Default.json
LogConfig.ini
NHUpdateManager.exe = program 1.0.0
NSWLogDynamic64U.dll
own.txt
)");
}

}  // namespace
}  // namespace nhupdate_test
