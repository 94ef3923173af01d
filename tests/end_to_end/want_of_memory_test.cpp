#include "tests/end_to_end/support/restart_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class WantOfMemoryEndToEndTest : public RestartTest {
 protected:
  void ExpectTheEndOf(DisturbedRun run) {
    run.fewest_moments = 2;
    constexpr int kRequestStride = 97;
    StarveAndRestart(run, kRequestStride);
  }

  // A new version of the product, as each stage finds it.
  void PrepareUpdate() const {
    hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
    hub_.Script(L"NIMBAHUB", {.exit_code = 0, .stage = hub_.Release()});
  }
  void PrepareFinalUpdate() const {
    hub_.StageRelease();
    hub_.PutManager(hub_.Module(), "2.0.0");
  }
};

TEST_F(WantOfMemoryEndToEndTest, EndsACheckAtOnce) {
  ExpectTheEndOf({.prepare =
                      [this] {
                        hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
                        WriteFileBytes(hub_.App() + L"\\Version.txt",
                                       "[ProductVersion]\r\nVersion = 1.0.0\r\n");
                      },
                  .executable = hub_.Manager(),
                  .arguments = L"-download",
                  .exit_code = 11});
}

TEST_F(WantOfMemoryEndToEndTest, EndsAnUpdateAtOnce) {
  ExpectTheEndOf({.prepare = [this] { PrepareUpdate(); },
                  .executable = hub_.Manager(),
                  .arguments = L"-update"});
}

TEST_F(WantOfMemoryEndToEndTest, EndsASelfUpdateAtOnce) {
  ExpectTheEndOf({.prepare = [this] { hub_.StageRelease(); },
                  .executable = hub_.StagedManager(),
                  .arguments = L"-self_update"});
}

TEST_F(WantOfMemoryEndToEndTest, EndsAFinalUpdateAtOnce) {
  ExpectTheEndOf({.prepare = [this] { PrepareFinalUpdate(); },
                  .executable = hub_.Manager(),
                  .arguments = L"-final_update"});
}

TEST_F(WantOfMemoryEndToEndTest, EndsAnInstallationAtOnce) {
  ExpectTheEndOf({.prepare = [this] { hub_.StageRelease(); },
                  .executable = hub_.Manager(),
                  .arguments = L"-install"});
}

}  // namespace
}  // namespace nhupdate_test
