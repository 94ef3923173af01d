#pragma once

// What the tests of the NimbaCast installation share: a product whose updater "downloads" a manager
// for NimbaCast by already having it.

#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {

class NimbaCastInstallationTest : public WorkflowTest {
 protected:
  NimbaCastInstallationTest();

  // Whatever happens, nobody is told.
  ~NimbaCastInstallationTest() override { EXPECT_THAT(boxes_.Shown(), testing::IsEmpty()); }

  [[nodiscard]] std::wstring NimbaCast() const { return product_.Root() + L"\\NimbaCast"; }

  static Lines BeginLine();
  static Lines CopyUpdaterLines();
  static Lines DownloadedLines();
  static Lines CopyManagerLines();
  static Lines InstalledLines();

  // From the beginning to the announcement of the launch.
  static Lines UntilDownload();
  static Lines UntilInstall();
};

}  // namespace nhupdate_test
