#pragma once

// What the tests of the workflows share: an installed product whose manager has started, texts for
// its boxes, and a desktop on which nobody waits.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/scripted_shell.h"
#include "tests/support/told_test.h"

namespace nhupdate_test {

class WorkflowTest : public ToldTest {
 protected:
  explicit WorkflowTest(const ProductOptions& options = {});

  [[nodiscard]] nhupdate::CManagerCenter& Manager() { return product_.Manager(); }

  // Tells the records, boxes and sleeps since the last time, and the workflow's result.
  void Tell(const std::string& heading, int result);
  void Tell(int result) { Tell("", result); }

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
  std::size_t told_boxes_ = 0;
  std::size_t told_sleeps_ = 0;
};

// The same in a process that isn't elevated.
class UnelevatedWorkflowTest : public WorkflowTest {
 protected:
  UnelevatedWorkflowTest() : WorkflowTest({.elevated = false}) {}
};

}  // namespace nhupdate_test
