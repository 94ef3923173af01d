#pragma once

// What the tests of the check and the background download share.

#include "tests/support/version_file.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {

class CheckAndDownloadTest : public WorkflowTest {
 protected:
  explicit CheckAndDownloadTest(const ProductOptions& options = {}) : WorkflowTest(options) {
    AddUpdater();
  }

  // Whatever happens, nobody is told.
  ~CheckAndDownloadTest() override { EXPECT_THAT(boxes_.Shown(), testing::IsEmpty()); }

  void SetVersions(const std::string& installed, const std::string& staged) {
    WriteFileBytes(product_.Base() + L"\\Version.txt", VersionFile(installed));
    WriteFileBytes(product_.App() + L"\\Version.txt", VersionFile(staged));
  }

  // The check, with what came of it.
  static Lines CheckLines(const Lines& outcome) {
    return Join({{L"2|Function : Check and background download"}, CheckForUpdateLines(), outcome});
  }

  // A check that found something.
  static Lines FoundLines() {
    return CheckLines({L"2|Launch updater success for check.", L"2|Updater exit = 0",
                       L"2|New update available."});
  }

  // The download, with what came of it.
  static Lines DownloadLines(
      const std::wstring& outcome = L"2|Launch updater success for baclground download.") {
    return Join({{L"2|Begin background download."}, BackgroundDownloadLines(), {outcome}});
  }

  static constexpr wchar_t kNoUpdaterLine[] =
      L"4|Update.exe not found : {base}\\Updater\\Updater.exe";
};

}  // namespace nhupdate_test
