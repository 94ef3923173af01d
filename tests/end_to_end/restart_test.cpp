// A stage of an update is ended, as by a power failure, right before each of its changes in turn.
// Started again with the same switch it has to leave what an undisturbed run leaves.

#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/program_end.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

constexpr int kMoreChangesThanThereAre = 500;

std::string EndState(const CInstalledHub& hub) {
  return hub.DescribeTree(hub.Root()) + ReadFileBytes(hub.Base() + L"\\Version.txt") +
         hub.DescribeTree(hub.DataFolder() + L"\\Corvane");
}

class RestartEndToEndTest : public EndToEndTest {
 protected:
  // What an update has to deal with: old files, files of the user, empty folders.
  static void PrepareUpdate(const CInstalledHub& hub) {
    hub.StageRelease();
    WriteFileBytes(hub.Base() + L"\\Plugins\\old.dll", "gone in 2.0.0");
    WriteFileBytes(hub.Base() + L"\\Settings\\user.cfg", "the user's own");
    CreateFolders(hub.Base() + L"\\Empty\\Emptier");
  }

  // The product as the new installed program finds it.
  static void PrepareFinalUpdate(const CInstalledHub& hub) {
    PrepareUpdate(hub);
    hub.PutManager(hub.Module(), "2.0.0");
  }

  // Returns how often the program was ended.
  template <typename Prepare, typename Executable>
  int EndAndRestartAtEveryChange(const Prepare& prepare, const Executable& executable_of,
                                 const std::wstring& arguments) {
    prepare(hub_);
    EXPECT_EQ(RunToTheEnd({.executable = executable_of(hub_), .arguments = arguments}).exit_code,
              0U);
    const std::string undisturbed = EndState(hub_);
    EXPECT_EQ(DescribeProductKeys(), ExpectedProductKeys());

    for (int change = 1; change < kMoreChangesThanThereAre; ++change) {
      SCOPED_TRACE("ended before change " + std::to_string(change));
      RemoveTree(hub_.Root());
      RemoveTree(hub_.DataFolder() + L"\\Corvane");
      DeleteProductKeys();
      hub_.PutProduct();
      prepare(hub_);

      const ProgramRun ended = RunToTheEnd(
          {.executable = executable_of(hub_), .arguments = arguments, .end_before_change = change});
      if (ended.exit_code != kEndedBeforeChange) {
        EXPECT_EQ(ended.exit_code, 0U);
        return change - 1;
      }
      const ProgramRun restarted =
          RunToTheEnd({.executable = executable_of(hub_), .arguments = arguments});

      EXPECT_EQ(restarted.exit_code, 0U);
      EXPECT_EQ(EndState(hub_), undisturbed);
      EXPECT_EQ(DescribeProductKeys(), ExpectedProductKeys());
      if (HasFailure()) {
        break;  // one report is enough
      }
    }
    return 0;
  }
};

TEST_F(RestartEndToEndTest, FinalUpdateCanBeEndedBeforeAnyChange) {
  const int changes = EndAndRestartAtEveryChange(
      PrepareFinalUpdate, [](const CInstalledHub& hub) { return hub.Manager(); }, L"-final_update");

  EXPECT_GT(changes, 50);
  RecordProperty("changes", changes);
}

TEST_F(RestartEndToEndTest, SelfUpdateCanBeEndedBeforeAnyChange) {
  const int changes = EndAndRestartAtEveryChange(
      PrepareUpdate, [](const CInstalledHub& hub) { return hub.StagedManager(); }, L"-self_update");

  EXPECT_GT(changes, 10);
  RecordProperty("changes", changes);
}

}  // namespace
}  // namespace nhupdate_test
