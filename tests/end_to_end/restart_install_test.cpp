#include "tests/end_to_end/support/restart_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class RestartInstallEndToEndTest : public RestartTest {
 protected:
  RestartInstallEndToEndTest() {
    const std::wstring manager = Cast() + L"\\CSUpdateManager";
    hub_.PutStandIn(L"updater", manager + L"\\CSUpdateManager.exe");
    PutScript(manager);
    WriteTask(manager, L"-Install", {.exit_code = 0});
  }

  [[nodiscard]] std::wstring Cast() const { return hub_.Scratch() + L"\\Cast"; }

  // Takes the staged program away. An installation passes it over, and to copy it along with the
  // updater would only take more time.
  void PrepareInstall() const {
    hub_.StageRelease();
    RemoveTree(hub_.App() + L"\\NHUpdateManager");
    hub_.Script(L"NIMBACS", {.exit_code = 0, .stage = Cast()});
  }
};

TEST_F(RestartInstallEndToEndTest, InstallCanBeEndedBeforeAnyChange) {
  const DisturbedRun run = {.prepare = [this] { PrepareInstall(); },
                            .executable = hub_.Manager(),
                            .arguments = L"-install",
                            .fewest_moments = 61};
  ExpectGoldenRunOf(run);

  EndAndRestartAtEveryChange(run);
}

}  // namespace
}  // namespace nhupdate_test
