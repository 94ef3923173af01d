#include "tests/end_to_end/support/restart_test.h"

namespace nhupdate_test {
namespace {

class RestartFinalUpdateEndToEndTest : public RestartTest {
 protected:
  // The product as the new installed program finds it.
  void PrepareFinalUpdate() const {
    hub_.StageRelease();
    PutTracesOfUse();
    hub_.PutManager(hub_.Module(), "2.0.0");
  }
};

TEST_F(RestartFinalUpdateEndToEndTest, FinalUpdateCanBeEndedBeforeAnyChange) {
  const DisturbedRun run = {.prepare = [this] { PrepareFinalUpdate(); },
                            .executable = hub_.Manager(),
                            .arguments = L"-final_update",
                            .fewest_moments = 51};
  ExpectGoldenRunOf(run);

  EndAndRestartAtEveryChange(run);
}

}  // namespace
}  // namespace nhupdate_test
