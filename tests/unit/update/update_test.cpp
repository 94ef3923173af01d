#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

class UpdateTest : public WorkflowTest {
 protected:
  UpdateTest() {
    AddFile(kUpdater);
    AddFile(kStagedManager);
  }

  int Run() override { return Manager().Update(); }
};

TEST_F(UpdateTest, StartsTheStagedCopyAfterTheUpdateWhateverBecameOfTheRefresh) {
  TellRun("NothingToRefresh", {EndsWith(1), EndsWith(0), EndsWith(0)});
  TellRun("Refreshed", {EndsWith(0), EndsWith(0), EndsWith(0), EndsWith(0)});
  TellRun("RefreshFailed", {EndsWith(0), EndsWith(9), EndsWith(0), EndsWith(0)});
  TellRun("ExitCodeUnreadable", {EndsWith(1), EndsUnreadably(), EndsWith(0)});
}

TEST_F(UpdateTest, TellsTheUserWhenTheUpdaterFailsOrCannotBeLaunched) {
  TellRun("NotLaunched", {EndsWith(1), FailsWith(ERROR_CANCELLED)});
  TellRun("Failed", {EndsWith(1), EndsWith(9)});
}

TEST_F(UpdateTest, TellsTheUserWhenTheNextStageCannotBeLaunchedButNotWhenItIsMissing) {
  TellRun("NotLaunched", {EndsWith(1), EndsWith(0), FailsWith(ERROR_ACCESS_DENIED)});
  Remove(kStagedManager);
  TellRun("Missing", {EndsWith(1), EndsWith(0)});
}

TEST_F(UpdateTest, EndsWithoutABoxWhenTheUpdaterIsMissing) {
  Remove(kUpdater);
  TellRun({});
}

TEST_F(UpdateTest, EndsBeforeAnythingIsLaunchedWithoutElevation) {
  LoseElevation();

  TellRun({});
}

}  // namespace
}  // namespace nhupdate_test
