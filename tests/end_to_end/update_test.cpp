#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"

namespace nhupdate_test {
namespace {

class UpdateEndToEndTest : public EndToEndTest {
 protected:
  UpdateEndToEndTest() {
    hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
    hub_.Script(L"NIMBAHUB", {.exit_code = 0});
  }
};

TEST_F(UpdateEndToEndTest, EndsWith10WhenNotElevated) {
  ExpectGoldenRun(10, RunUnelevated(L"/UPDATE"));
}

TEST_F(UpdateEndToEndTest, EndsWith13AndABoxWhenTheUpdaterFails) {
  hub_.Script(L"NIMBAHUB", {.exit_code = -5});

  ExpectGoldenRun(13, Run(L"-update"));
}

TEST_F(UpdateEndToEndTest, EndsWith14WithoutAnUpdater) {
  ::DeleteFileW((hub_.Updater() + L"\\Updater.exe").c_str());

  ExpectGoldenRun(14, Run(L"-update"));
}

TEST_F(UpdateEndToEndTest, EndsWith14AndABoxWhenTheUpdaterCannotBeStarted) {
  const HeldFile updater(hub_.Updater() + L"\\Updater.exe");

  ExpectGoldenRun(14, Run(L"-update"));
}

TEST_F(UpdateEndToEndTest, EndsWith15WithoutABoxWhenNothingWasStaged) {
  ExpectGoldenRun(15, Run(L"-update"));
}

TEST_F(UpdateEndToEndTest, EndsWith16AndABoxWhenTheStagedProgramCannotBeStarted) {
  hub_.StageRelease();
  const HeldFile staged(hub_.StagedManager());

  ExpectGoldenRun(16, Run(L"-update"));
}

TEST_F(UpdateEndToEndTest, EndsWith0AndKeepsTheConfigurationWhenTheNextStageWasStarted) {
  // Only this stage counts here: what it starts is a stand-in.
  hub_.PutStandIn(L"updater", hub_.StagedManager());
  PutScript(hub_.App() + L"\\NHUpdateManager");
  WriteTask(hub_.App() + L"\\NHUpdateManager", L"-self_update", {.exit_code = 77});

  ExpectGoldenRun(0, Run(L"-update"));
}

// A file can't be a folder with a new updater, so there is nothing to wait for.
TEST_F(UpdateEndToEndTest, LosesNoTimeOverAFileInThePlaceOfTheNewUpdater) {
  WriteFileBytes(hub_.Updater() + L"\\NewUpdater", "a file");

  ExpectGoldenRun(15, Run(L"-update"));
}

TEST_F(UpdateEndToEndTest, GoesOnWithTheOldUpdaterWhenTheNewOneFails) {
  hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 0});
  hub_.Script(L"NIMBA_SOFTWARE", {.exit_code = 3});

  ExpectGoldenRun(15, Run(L"-update"));
}

}  // namespace
}  // namespace nhupdate_test
