// A later stage of the chain is ended, and the whole chain is started again.

#include "tests/end_to_end/support/restart_test.h"

namespace nhupdate_test {
namespace {

class RestartChainEndToEndTest : public RestartTest {
 protected:
  DisturbedRun Chain() {
    return {.prepare =
                [this] {
                  PutTracesOfUse();
                  hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
                  hub_.Script(L"NIMBAHUB", {.exit_code = 0, .stage = hub_.Release()});
                },
            .executable = hub_.Manager(),
            .arguments = L"-update"};
  }
};

TEST_F(RestartChainEndToEndTest, TheWholeUpdateCanBeStartedAgainAfterItsSecondStageWasEnded) {
  DisturbedRun chain = Chain();
  chain.ended_executable = hub_.StagedManager();
  chain.ended_arguments = L"-self_update";
  chain.prepare_stage = [this] { hub_.StageRelease(); };

  chain.fewest_moments = 2;

  EndAndRestartAtEveryChange(chain, 7);
}

TEST_F(RestartChainEndToEndTest, TheWholeUpdateCanBeStartedAgainAfterItsLastStageWasEnded) {
  DisturbedRun chain = Chain();
  chain.ended_arguments = L"-final_update";
  chain.prepare_stage = [this] {
    hub_.StageRelease();
    hub_.PutManager(hub_.Module(), "2.0.0");
  };

  chain.fewest_moments = 4;

  EndAndRestartAtEveryChange(chain, 16);
}

}  // namespace
}  // namespace nhupdate_test
