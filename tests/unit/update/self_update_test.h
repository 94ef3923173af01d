#pragma once

// What the tests of the self update share: a staged copy of the manager that is running, and the
// records of its way into the installed folder.

#include "tests/support/fake_process_table.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {

class SelfUpdateTest : public WorkflowTest {
 protected:
  explicit SelfUpdateTest(const ProductOptions& options = {.module = kStagedModule});

  static constexpr wchar_t kStagedModule[] = L"\\Updater\\App\\NHUpdateManager";
  static constexpr wchar_t kInstalledManager[] = L"\\NHUpdateManager\\NHUpdateManager.exe";

  // That there is no other copy to stop.
  static Lines StoppedLines();

  // The manager consists of its executable, a string file and the log library.
  static Lines CopyLines(const std::wstring& from = L"{base}\\Updater\\App\\NHUpdateManager",
                         const std::wstring& to = L"{base}\\NHUpdateManager");
  static Lines FailedCopyLines();  // at the first file, which is in use
  static Lines CopiedLine();

  FakeProcessTable no_processes_;
};

}  // namespace nhupdate_test
