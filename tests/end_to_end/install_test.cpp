#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/other_copy.h"
#include "tests/support/held_file.h"

namespace nhupdate_test {
namespace {

class InstallEndToEndTest : public EndToEndTest {
 protected:
  // What the sibling's updater downloads: a manager with a script of its own.
  void OfferNimbaCast(int install_result) const {
    const std::wstring release = hub_.Scratch() + L"\\Cast";
    const std::wstring manager = release + L"\\CSUpdateManager";
    hub_.PutStandIn(L"updater", manager + L"\\CSUpdateManager.exe");
    PutScript(manager);
    WriteTask(manager, L"-Install", {.exit_code = install_result});
    hub_.Script(L"NIMBACS", {.exit_code = 0, .stage = release});
  }
};

TEST_F(InstallEndToEndTest, EndsWith10WhenNotElevated) {
  hub_.StageRelease();

  ExpectGoldenRun(10, RunUnelevated(L"-install"));
}

TEST_F(InstallEndToEndTest, InstallsTheHubAndNimbaCast) {
  OfferNimbaCast(0);

  ExpectGoldenRun(0, Run(L"-install"));
}

TEST_F(InstallEndToEndTest, EndsWith0WhenNimbaCastCannotBeInstalled) {
  OfferNimbaCast(9);

  ExpectGoldenRun(0, Run(L"-install"));
}

TEST_F(InstallEndToEndTest, EndsWith1AndABoxWhenAnotherCopyCannotBeStopped) {
  hub_.Script(L"NIMBACS", {.exit_code = 4});
  const COtherCopy stubborn(hub_.Scratch() + L"\\Elsewhere\\NHUpdateManager.exe");
  NameProcess(stubborn.Id(), L"stubborn");

  ExpectGoldenRun(1, Run(L"-install"));
}

TEST_F(InstallEndToEndTest, EndsWith2AndABoxWhenAnInstalledFileIsHeld) {
  hub_.Script(L"NIMBACS", {.exit_code = 0});
  const HeldFile held(hub_.Base() + L"\\NHHub.exe", FILE_SHARE_READ);

  ExpectGoldenRun(2, Run(L"-install"));
}

}  // namespace
}  // namespace nhupdate_test
