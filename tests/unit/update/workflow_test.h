#pragma once

// What the tests of the workflows share: an installed product whose manager has started, texts for
// its boxes, and a desktop on which nobody waits.

#include "tests/support/installed_product.h"
#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/scripted_shell.h"
#include "tests/support/told_test.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class WorkflowTest : public ToldTest {
 protected:
  explicit WorkflowTest(const ProductOptions& options = {});

  [[nodiscard]] CManagerCenter& Manager() { return product_.Manager(); }

  // The workflow that the fixture is for.
  virtual int Run() = 0;

  // From now on the process isn't elevated.
  void LoseElevation();

  // Runs it with children that answer by the script. Tells the records, boxes and sleeps, the
  // result and what was done with the children.
  void TellRun(const std::string& heading, const std::vector<ShellAnswer>& script);
  void TellRun(const std::vector<ShellAnswer>& script) { TellRun("", script); }

  // Creates an empty file, or deletes a file, given relative to the base folder.
  void AddFile(const std::wstring& path) { WriteFileBytes(product_.Base() + path, ""); }
  void Remove(const std::wstring& path);

  static constexpr wchar_t kUpdater[] = L"\\Updater\\Updater.exe";
  static constexpr wchar_t kStagedManager[] =
      L"\\Updater\\App\\NHUpdateManager\\NHUpdateManager.exe";

  InstalledProduct product_;
  RecordedBoxes boxes_;
  RecordedSleeps sleeps_;

 private:
  void Tell(const std::string& heading, int result);

  std::size_t told_boxes_ = 0;
  std::size_t told_sleeps_ = 0;
};

}  // namespace nhupdate_test
