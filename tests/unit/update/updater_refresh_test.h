#pragma once

// What the tests of the updater's refresh share: an old updater that is installed, and a new one
// that waits to be copied.

#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {

class UpdaterRefreshTest : public WorkflowTest {
 protected:
  UpdaterRefreshTest() {
    WriteFileBytes(product_.Base() + kUpdater, "old");
    WriteFileBytes(product_.Base() + L"\\Updater\\NewUpdater\\Updater.exe", "new");
  }

  // Whatever happens, nobody is told.
  ~UpdaterRefreshTest() override { EXPECT_THAT(boxes_.Shown(), testing::IsEmpty()); }

  [[nodiscard]] std::string InstalledUpdater() { return ReadFileBytes(product_.Base() + kUpdater); }

  // The check, with what came of it.
  static Lines CheckLines(const Lines& outcome) {
    return Join({{L"2|Begin update updater."}, CheckForUpdaterLines(), outcome});
  }

  // A check that found something, and the update of the updater, with what came of that.
  static Lines UpdateLines(const Lines& outcome) {
    return Join({CheckLines({L"2|Launch updater success for check.", L"2|Updater exit = 0",
                             L"2|New updater available."}),
                 UpdateUpdaterLines(), outcome});
  }

  // The copy of the new updater, as far as it is tried, and its success.
  static Lines CopyLines() {
    return {
        L"2|Copy folder from {base}\\Updater\\NewUpdater to {base}\\Updater",
        L"2|Copy file from {base}\\Updater\\NewUpdater\\Updater.exe to "
        L"{base}\\Updater\\Updater.exe",
    };
  }
  static Lines CopiedLines() { return {L"2|Copy complete.", L"2|Update updater complete."}; }
};

}  // namespace nhupdate_test
