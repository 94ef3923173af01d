#include "update/updater_run.h"

#include "tests/unit/update/mechanism_test.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"

namespace nhupdate_test {
namespace {

const struct {
  const char* name;
  ShellAnswer answer;
} kAnswers[] = {
    {"0", EndsWith(0)},
    {"1", EndsWith(1)},
    {"2", EndsWith(2)},
    {"-1", EndsWith(0xFFFFFFFF)},
    {"SmallestCode", EndsWith(0x80000000)},
    {"StillActive", EndsWith(259)},
    {"Unreadable", EndsUnreadably()},
    {"NoProcess", HandedOver()},
    {"NotLaunched", FailsWith(ERROR_CANCELLED)},
};

class UpdaterRunTest : public MechanismTest {
 protected:
  int Check() {
    return static_cast<int>(
        CheckWithUpdater(nhupdate::kCheckForUpdate, Updater(),
                         {.found = L"Found.", .nothing_found = L"Nothing found."}, log_.Log()));
  }
  int Update() {
    return static_cast<int>(UpdateWithUpdater(nhupdate::kUpdateProduct, Updater(), log_.Log()));
  }
};

TEST_F(UpdaterRunTest, JudgesAChecksExitCodeAndClosesItsProcess) {
  const ScriptedShell none({});
  Tell("Missing", Check());
  Add(L"\\Updater\\Updater.exe");
  for (const auto& [name, answer] : kAnswers) {
    const ScriptedShell shell({answer});

    Tell(name, Check());

    TellEvents(shell);
    EXPECT_EQ(shell.OpenProcesses(), 0u);
  }
}

// On purpose, for whoever looks after a failure.
TEST_F(UpdaterRunTest, JudgesAnUpdatesExitCodeAndLeavesAFailedOnesProcessOpen) {
  const ScriptedShell none({});
  Tell("Missing", Update());
  Add(L"\\Updater\\Updater.exe");
  for (const auto& [name, answer] : kAnswers) {
    const ScriptedShell shell({answer});

    const int outcome = Update();

    Tell(name, outcome);
    TellEvents(shell);
    EXPECT_EQ(shell.OpenProcesses(),
              outcome == static_cast<int>(nhupdate::UpdateOutcome::kFailed) ? 1u : 0u);
  }
}

}  // namespace
}  // namespace nhupdate_test
