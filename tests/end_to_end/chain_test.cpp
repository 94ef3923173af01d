#include <cstddef>
#include <iterator>

#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/log_source.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class ChainEndToEndTest : public EndToEndTest {
 protected:
  explicit ChainEndToEndTest(std::size_t root_length = 0) : EndToEndTest(root_length) {
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
  static std::string UpdateRecords() {
    return StartUp() + RefreshCheck() + R"(2|Launch updater success for check.
2|Updater exit = 0
2|New updater available.
)" + LaunchUpdaterUpdate() +
           R"(2|Launch updater success for update.
2|Updater exit = 0
2|Copy folder from {base}\Updater\NewUpdater to {base}\Updater
2|Copy file from {base}\Updater\NewUpdater\updater.txt to {base}\Updater\updater.txt
2|Copy complete.
2|Update updater complete.
)" + LaunchHubUpdate() +
           R"(2|Launch updater success for update.
2|Updater exit = 0
)" + LaunchSelfUpdate() +
           R"(2|Launch NHUpdateManager success for self update.
2|Return 0
)";
  }

  static std::string SelfUpdateRecords() {
    return StartUp(kStagedModule) + "2|Function : Self Update\n" + NoOtherManager() + SelfCopied() +
           LaunchFinalUpdate() +
           R"(2|Launch NHUpdateManager success for final update.
2|Return 0
)";
  }

  static std::string FinalStageRecords() {
    return StartUp() + "2|Function : Final Update\n" + NoOtherManager() +
           "2|Stop associates OK.\n" + Grants() + TopLevelFilesReplaced() + ReleaseCopied() +
           Registered() + R"(2|Remove empty folder in path : {base}
2|Remove empty folder : {base}\Empty\Emptier
2|Remove empty folder : {base}\Empty
2|Remove empty folder : {base}\Updater\Temp
2|Return 0
)";
  }

  // What the update leaves, but for what belongs to the stand-ins.
  static std::string UpdatedTree(const std::string& script, const std::string& updater) {
    return R"(Nimba Hub\
Nimba Hub\NHHub.exe = hub 2.0.0
Nimba Hub\NHUpdateManager\
)" + DescribeManager("Nimba Hub\\NHUpdateManager\\", "2.0.0") +
           R"(Nimba Hub\Plugins\
Nimba Hub\Plugins\Cameras\
Nimba Hub\Plugins\Cameras\cam.dll = cameras 2.0.0
Nimba Hub\Plugins\sound.dll = sound 2.0.0
Nimba Hub\Settings\
Nimba Hub\Settings\user.cfg = the user's own
Nimba Hub\Updater\
Nimba Hub\Updater\App\
Nimba Hub\Updater\App\NHHub.exe = hub 2.0.0
Nimba Hub\Updater\App\NHUpdateManager\
)" + DescribeManager("Nimba Hub\\Updater\\App\\NHUpdateManager\\", "2.0.0") +
           R"(Nimba Hub\Updater\App\Plugins\
Nimba Hub\Updater\App\Plugins\Cameras\
Nimba Hub\Updater\App\Plugins\Cameras\cam.dll = cameras 2.0.0
Nimba Hub\Updater\App\Plugins\sound.dll = sound 2.0.0
Nimba Hub\Updater\App\Version.txt = [ProductVersion]\r\nVersion=2.0.0\r\n
Nimba Hub\Updater\Config\
Nimba Hub\Updater\Config\ut.ini = [ut]
Nimba Hub\Updater\NewUpdater\
Nimba Hub\Updater\NewUpdater\updater.txt = 2.0.0
Nimba Hub\Updater\Script.ini = )" +
           script + "\nNimba Hub\\Updater\\Updater.exe = " + updater + R"(
Nimba Hub\Updater\updater.txt = 2.0.0
Nimba Hub\Version.txt = [ProductVersion]\r\nVersion=2.0.0\r\n
)";
  }

  void UpdateAndLookAtEverything() {
    const std::string script = DescribeFile(hub_.Updater() + L"\\Script.ini");
    const std::string updater = DescribeFile(hub_.Updater() + L"\\Updater.exe");

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
    EXPECT_EQ(TranscriptOf(run.managers[2].id), FinalStageRecords());

    EXPECT_EQ(DescribeTree(hub_.Root()), UpdatedTree(script, updater));
    EXPECT_EQ(DescribeProductKeys(), ExpectedProductKeys(hub_));
    EXPECT_THAT(GrantParameters(), testing::UnorderedElementsAreArray(ExpectedGrantParameters()));
  }
};

// The program replaces the product, its updater and itself.
TEST_F(ChainEndToEndTest, UpdatesFromOneVersionToTheNext) {
  UpdateAndLookAtEverything();
}

// The longest path of the update, that of the staged string file, has as many characters as Windows
// allows to programs that know no longer ones.
constexpr std::size_t kLongestPath = 259;
constexpr std::size_t kLongestPathInRoot =
    std::size("\\Nimba Hub\\Updater\\App\\NHUpdateManager\\Config\\NHUpdateManager.Default.json") -
    1;

class LongPathChainEndToEndTest : public ChainEndToEndTest {
 protected:
  LongPathChainEndToEndTest() : ChainEndToEndTest(kLongestPath - kLongestPathInRoot) {}
};

TEST_F(LongPathChainEndToEndTest, UpdatesAProductThatLiesAsDeepAsItCan) {
  ASSERT_EQ((hub_.App() + L"\\NHUpdateManager\\Config\\NHUpdateManager.Default.json").size(),
            kLongestPath);

  UpdateAndLookAtEverything();
}

// All three processes write into one file.
TEST_F(ChainEndToEndTest, EveryStageBeginsItsRecordsWithTheHeaderThatNamesIt) {
  const ProgramRun run = Run(L"-update");

  ASSERT_EQ(run.managers.size(), 3U);
  for (const ManagerProcess& manager : run.managers) {
    std::vector<HubLogRecord> records = ReadLog(hub_);
    std::erase_if(records,
                  [&](const HubLogRecord& record) { return record.process_id != manager.id; });
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
