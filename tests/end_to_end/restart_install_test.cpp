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

  // Without a staged program: the installed one passes it over, and it would only be one more
  // folder to copy with the updater.
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
