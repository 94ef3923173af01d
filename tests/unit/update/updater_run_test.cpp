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
  // Without an updater, then with one that gives each of the answers.
  template <typename Mechanism>
  void TellRuns(Mechanism mechanism) {
    TellRun("Missing", {}, mechanism);
    Add(L"\\Updater\\Updater.exe");
    for (const auto& [name, answer] : kAnswers) {
      TellRun(name, {answer}, mechanism);
    }
  }
};

TEST_F(UpdaterRunTest, JudgesAChecksExitCodeAndClosesItsProcess) {
  TellRuns([this] {
    return CheckWithUpdater(kCheckForUpdate, Updater(),
                            {.found = L"Found.", .nothing_found = L"Nothing found."}, log_.Log());
  });
}

// A failed updater's handle is kept open on purpose, for whoever looks into the failure.
TEST_F(UpdaterRunTest, JudgesAnUpdatesExitCodeAndLeavesAFailedOnesProcessOpen) {
  TellRuns([this] { return UpdateWithUpdater(kUpdateProduct, Updater(), log_.Log()); });
}

}  // namespace
}  // namespace nhupdate_test
