#include <cstddef>
#include <iterator>

#include "tests/end_to_end/support/end_to_end_test.h"
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
};

// The program replaces the product, its updater and itself.
TEST_F(ChainEndToEndTest, UpdatesFromOneVersionToTheNext) {
  ExpectGoldenRun(0, Run(L"-update"));
}

// The longest path of the update, that of the staged string file, has as many characters as Windows
// allows to programs that aren't made for long paths.
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

  ExpectGoldenRun(0, Run(L"-update"));
}

// All three processes write into the same log file.
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
