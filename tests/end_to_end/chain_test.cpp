#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/log_source.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class ChainEndToEndTest : public EndToEndTest {
 protected:
  ChainEndToEndTest() {
    const std::wstring new_updater = hub_.Scratch() + L"\\Updater 2";
    WriteFileBytes(new_updater + L"\\updater.txt", "2.0.0");
    hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 0});
    hub_.Script(L"NIMBA_SOFTWARE", {.exit_code = 0, .new_updater = new_updater});
    hub_.Script(L"NIMBAHUB", {.exit_code = 0, .delay_ms = 200, .stage = hub_.Release()});
    WriteFileBytes(hub_.Base() + L"\\Plugins\\old.dll", "gone in 2.0.0");
    WriteFileBytes(hub_.Base() + L"\\Settings\\user.cfg", "the user's own");
    CreateFolders(hub_.Base() + L"\\Empty\\Emptier");
  }

  // The records of the three stages.
  [[nodiscard]] std::string UpdateRecords() const {
    return StartUp() + "2|Function : Update\n2|Begin update updater.\n" +
           Launch("{base}\\Updater", "Updater.exe",
                  "-NoUI -CheckTask NIMBA_SOFTWARE "
                  "com.corvane.windows.nimba_internal.new_updater -SkipAdditionTasks "
                  "-ExitWhenParentDie:{pid}") +
           R"(2|Launch updater success for check.
2|Updater exit = 0
2|New updater available.
)" +
           Launch(
               "{base}\\Updater", "Updater.exe",
               "NIMBA_SOFTWARE com.corvane.windows.nimba_internal.new_updater -SkipAdditionTasks "
               "-KillBrothers -ExitWhenParentDie:{pid}") +
           R"(2|Launch updater success for update.
2|Updater exit = 0
2|Copy folder from {base}\Updater\NewUpdater to {base}\Updater
2|Copy file from {base}\Updater\NewUpdater\updater.txt to {base}\Updater\updater.txt
2|Copy complete.
2|Update updater complete.
)" +
           Launch("{base}\\Updater", "Updater.exe",
                  "NIMBAHUB -SkipAdditionTasks -KillBrothers -ExitWhenParentDie:{pid}") +
           R"(2|Launch updater success for update.
2|Updater exit = 0
)" + Launch("{base}\\Updater\\App\\NHUpdateManager", "NHUpdateManager.exe", "-self_update") +
           R"(2|Launch NHUpdateManager success for self update.
2|Return 0
)";
  }

  [[nodiscard]] std::string SelfUpdateRecords() const {
    return StartUp("{base}\\Updater\\App\\NHUpdateManager") + "2|Function : Self Update\n" +
           NoOtherManager() +
           R"(2|Copy folder from {base}\Updater\App\NHUpdateManager to {base}\NHUpdateManager
2|Delete Dir : {base}\NHUpdateManager\Config
2|Copy folder from {base}\Updater\App\NHUpdateManager\Config to {base}\NHUpdateManager\Config
2|Copy file from {base}\Updater\App\NHUpdateManager\Config\NHUpdateManager.Default.json to {base}\NHUpdateManager\Config\NHUpdateManager.Default.json
2|Copy file from {base}\Updater\App\NHUpdateManager\LogConfig.ini to {base}\NHUpdateManager\LogConfig.ini
2|Copy file from {base}\Updater\App\NHUpdateManager\NHUpdateManager.exe to {base}\NHUpdateManager\NHUpdateManager.exe
2|Copy file from {base}\Updater\App\NHUpdateManager\NSWLogDynamic64U.dll to {base}\NHUpdateManager\NSWLogDynamic64U.dll
2|Copy NHUpdateManager success.
)" + Launch("{base}\\NHUpdateManager", "NHUpdateManager.exe", "-final_update") +
           R"(2|Launch NHUpdateManager success for final update.
2|Return 0
)";
  }

  [[nodiscard]] std::string FinalUpdateRecords() const {
    return StartUp() + "2|Function : Final Update\n" + NoOtherManager() +
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
2|Copy file from {base}\Updater\App\Plugins\sound.dll to {base}\Plugins\sound.dll
2|Copy file from {base}\Updater\App\Version.txt to {base}\Version.txt
2|Copy complete.
2|Copy files OK.
2|Nimba Hub registry set.
2|NHUpdateManager crash dump folder set to : {data}\Corvane\NimbaSoftware\NimbaHub\Log
2|Update registry OK.
2|Remove empty folder in path : {base}
2|Remove empty folder : {base}\Empty\Emptier
2|Remove empty folder : {base}\Empty
2|Remove empty folder : {base}\Updater\Temp
2|Return 0
)";
  }
};

// The program replaces the product, its updater and itself.
TEST_F(ChainEndToEndTest, UpdatesFromOneVersionToTheNext) {
  const ProgramRun run = Run(L"-update");

  ASSERT_EQ(run.managers.size(), 3U);
  EXPECT_EQ(hub_.WithPlaceholders(run.managers[0].path),
            "{base}\\NHUpdateManager\\NHUpdateManager.exe");
  EXPECT_EQ(hub_.WithPlaceholders(run.managers[1].path),
            "{base}\\Updater\\App\\NHUpdateManager\\NHUpdateManager.exe");
  EXPECT_EQ(hub_.WithPlaceholders(run.managers[2].path),
            "{base}\\NHUpdateManager\\NHUpdateManager.exe");
  for (const ManagerProcess& manager : run.managers) {
    EXPECT_EQ(manager.exit_code, 0U);
  }
  EXPECT_TRUE(run.boxes.empty());

  EXPECT_EQ(TranscriptOf(run.managers[0].id), UpdateRecords());
  EXPECT_EQ(TranscriptOf(run.managers[1].id), SelfUpdateRecords());
  EXPECT_EQ(TranscriptOf(run.managers[2].id), FinalUpdateRecords());

  EXPECT_EQ(hub_.DescribeTree(hub_.Root()), R"(Nimba Hub\
Nimba Hub\NHHub.exe = hub 2.0.0
Nimba Hub\NHUpdateManager\
Nimba Hub\NHUpdateManager\Config\
Nimba Hub\NHUpdateManager\Config\NHUpdateManager.Default.json
Nimba Hub\NHUpdateManager\LogConfig.ini
Nimba Hub\NHUpdateManager\NHUpdateManager.exe = program 2.0.0
Nimba Hub\NHUpdateManager\NSWLogDynamic64U.dll
Nimba Hub\Plugins\
Nimba Hub\Plugins\Cameras\
Nimba Hub\Plugins\Cameras\cam.dll = cameras 2.0.0
Nimba Hub\Plugins\sound.dll = sound 2.0.0
Nimba Hub\Settings\
Nimba Hub\Settings\user.cfg = the user's own
Nimba Hub\Updater\
Nimba Hub\Updater\App\
Nimba Hub\Updater\App\NHHub.exe = hub 2.0.0
Nimba Hub\Updater\App\NHUpdateManager\
Nimba Hub\Updater\App\NHUpdateManager\Config\
Nimba Hub\Updater\App\NHUpdateManager\Config\NHUpdateManager.Default.json
Nimba Hub\Updater\App\NHUpdateManager\LogConfig.ini
Nimba Hub\Updater\App\NHUpdateManager\NHUpdateManager.exe = program 2.0.0
Nimba Hub\Updater\App\NHUpdateManager\NSWLogDynamic64U.dll
Nimba Hub\Updater\App\Plugins\
Nimba Hub\Updater\App\Plugins\Cameras\
Nimba Hub\Updater\App\Plugins\Cameras\cam.dll = cameras 2.0.0
Nimba Hub\Updater\App\Plugins\sound.dll = sound 2.0.0
Nimba Hub\Updater\App\Version.txt
Nimba Hub\Updater\Config\
Nimba Hub\Updater\Config\ut.ini
Nimba Hub\Updater\NewUpdater\
Nimba Hub\Updater\NewUpdater\updater.txt
Nimba Hub\Updater\Script.ini
Nimba Hub\Updater\Updater.exe
Nimba Hub\Updater\updater.txt
Nimba Hub\Version.txt
)");
  EXPECT_EQ(ReadFileBytes(hub_.Base() + L"\\Version.txt"), "[ProductVersion]\r\nVersion=2.0.0\r\n");
  EXPECT_EQ(DescribeProductKeys(), ExpectedProductKeys());
  EXPECT_THAT(GrantParameters(), testing::UnorderedElementsAreArray(ExpectedGrantParameters()));
}

// All three processes write into one file.
TEST_F(ChainEndToEndTest, EveryStageBeginsItsRecordsWithTheHeaderThatNamesIt) {
  const ProgramRun run = Run(L"-update");

  ASSERT_EQ(run.managers.size(), 3U);
  for (const ManagerProcess& manager : run.managers) {
    std::vector<LogRecord> records = ReadLog(hub_);
    std::erase_if(records,
                  [&](const LogRecord& record) { return record.process_id != manager.id; });
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(records.front().tag, kHeaderTag);
    EXPECT_NE(records.front().text.find(L"executable " + manager.path + L","), std::wstring::npos);
    for (std::size_t index = 1; index < records.size(); ++index) {
      EXPECT_EQ(records[index].tag, L"NHUpdateManager");
    }
  }
}

}  // namespace
}  // namespace nhupdate_test
