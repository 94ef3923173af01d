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

  void ExpectTheSameEnd(const DisturbedRun& chain, int stride, int at_least) {
    const int times = EndAndRestartAtEveryChange(chain, StrideUnlessLong(stride));

    EXPECT_GE(times, at_least);
    RecordProperty("times", times);
  }
};

TEST_F(RestartChainEndToEndTest, TheWholeUpdateCanBeStartedAgainAfterItsSecondStageWasEnded) {
  DisturbedRun chain = Chain();
  chain.ended_executable = hub_.StagedManager();
  chain.ended_arguments = L"-self_update";
  chain.prepare_stage = [this] { hub_.StageRelease(); };

  ExpectTheSameEnd(chain, 7, 2);
}

TEST_F(RestartChainEndToEndTest, TheWholeUpdateCanBeStartedAgainAfterItsLastStageWasEnded) {
  DisturbedRun chain = Chain();
  chain.ended_arguments = L"-final_update";
  chain.prepare_stage = [this] {
    hub_.StageRelease();
    hub_.PutManager(hub_.Module(), "2.0.0");
  };

  ExpectTheSameEnd(chain, 16, 4);
}

}  // namespace
}  // namespace nhupdate_test
