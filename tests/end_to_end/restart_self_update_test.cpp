#include "tests/end_to_end/support/restart_test.h"

namespace nhupdate_test {
namespace {

class RestartSelfUpdateEndToEndTest : public RestartTest {
 protected:
  void PrepareSelfUpdate() const {
    hub_.StageRelease();
    PutTracesOfUse();
  }
};

// The program of this stage is ended; the last stage follows its restart.
TEST_F(RestartSelfUpdateEndToEndTest, SelfUpdateCanBeEndedBeforeAnyChange) {
  const DisturbedRun run = {.prepare = [this] { PrepareSelfUpdate(); },
                            .executable = hub_.StagedManager(),
                            .arguments = L"-self_update",
                            .fewest_moments = 11};
  ExpectGoldenRunOf(run);

  EndAndRestartAtEveryChange(run);
}

}  // namespace
}  // namespace nhupdate_test
