#include "tests/end_to_end/support/restart_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class RestartUpdateEndToEndTest : public RestartTest {
 protected:
  RestartUpdateEndToEndTest() {
    WriteFileBytes(NewUpdater() + L"\\updater.txt", "2.0.0");
    WriteFileBytes(NewUpdater() + L"\\Languages\\de.txt", "deutsch");
  }

  [[nodiscard]] std::wstring NewUpdater() const { return hub_.Scratch() + L"\\Updater 2"; }

  // A new updater is there, and a new version of the product.
  void PrepareUpdate() const {
    PutTracesOfUse();
    hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 0});
    hub_.Script(L"NIMBA_SOFTWARE", {.exit_code = 0, .new_updater = NewUpdater()});
    hub_.Script(L"NIMBAHUB", {.exit_code = 0, .stage = hub_.Release()});
  }

  void PrepareDownload() const {
    hub_.Script(L"check NIMBAHUB", {.exit_code = 0});
    hub_.Script(L"download NIMBAHUB", {.exit_code = 0, .stage = hub_.Release()});
  }
};

// The program of the first stage is ended; the later stages follow its restart.
TEST_F(RestartUpdateEndToEndTest, UpdateCanBeEndedBeforeAnyChange) {
  const DisturbedRun run = {.prepare = [this] { PrepareUpdate(); },
                            .executable = hub_.Manager(),
                            .arguments = L"-update",
                            .fewest_moments = 11};
  ExpectGoldenRunOf(run);

  EndAndRestartAtEveryChange(run);
}

TEST_F(RestartUpdateEndToEndTest, DownloadCanBeEndedBeforeAnyChange) {
  const DisturbedRun run = {.prepare = [this] { PrepareDownload(); },
                            .executable = hub_.Manager(),
                            .arguments = L"-download",
                            .exit_code = 12,
                            .fewest_moments = 6};
  ExpectGoldenRunOf(run);

  EndAndRestartAtEveryChange(run);
}

}  // namespace
}  // namespace nhupdate_test
