#include "tests/end_to_end/support/restart_test.h"

namespace nhupdate_test {
namespace {

class RestartEndToEndTest : public RestartTest {
 protected:
  void PrepareSelfUpdate() const {
    hub_.StageRelease();
    PutTracesOfUse();
  }

  // The product as the new installed program finds it.
  void PrepareFinalUpdate() const {
    PrepareSelfUpdate();
    hub_.PutManager(hub_.Module(), "2.0.0");
  }
};

TEST_F(RestartEndToEndTest, FinalUpdateCanBeEndedBeforeAnyChange) {
  const int changes = EndAndRestartAtEveryChange({.prepare = [this] { PrepareFinalUpdate(); },
                                                  .executable = hub_.Manager(),
                                                  .arguments = L"-final_update",
                                                  .product_keys = ExpectedProductKeys(hub_)});

  EXPECT_GT(changes, 50);
  RecordProperty("changes", changes);
}

TEST_F(RestartEndToEndTest, SelfUpdateCanBeEndedBeforeAnyChange) {
  const int changes = EndAndRestartAtEveryChange({.prepare = [this] { PrepareSelfUpdate(); },
                                                  .executable = hub_.StagedManager(),
                                                  .arguments = L"-self_update",
                                                  .product_keys = ExpectedProductKeys(hub_)});

  EXPECT_GT(changes, 10);
  RecordProperty("changes", changes);
}

}  // namespace
}  // namespace nhupdate_test
