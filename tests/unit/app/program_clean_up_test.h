#pragma once

// What the tests of the clean-up after a failure share: whole runs of the program on a system on
// which nothing really happens.

#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "tests/support/expected_records.h"
#include "tests/support/fake_process_table.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/quiet_system.h"
#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/scratch_registry.h"
#include "tests/support/scripted_shell.h"

namespace nhupdate_test {

class ProgramCleanUpTest : public testing::Test {
 protected:
  static constexpr wchar_t kStagedModule[] = L"\\Updater\\App\\NHUpdateManager";

  static void AddUpdater(const InstalledProduct& product) {
    WriteFileBytes(product.Base() + L"\\Updater\\Updater.exe", "not a real program");
  }

  static std::wstring InstalledConfig(const InstalledProduct& product) {
    return product.Base() + L"\\Updater\\Config\\ut.ini";
  }
  // Where a staged copy would look if it took itself for the installed one.
  static std::wstring MistakenConfig(const InstalledProduct& product) {
    return product.App() + L"\\Updater\\Config\\ut.ini";
  }
  static void AddConfigs(const InstalledProduct& product) {
    WriteFileBytes(InstalledConfig(product), "x");
    WriteFileBytes(MistakenConfig(product), "x");
  }

  static std::wstring DeletedLine() {
    return L"2|Updater config file delete ok : {base}\\Updater\\Config\\ut.ini";
  }

  QuietSystem system_;
  RecordedBoxes boxes_;
  RecordedSleeps sleeps_;
  RecordedTools tools_;
  FakeProcessTable no_processes_;
  ScratchRegistry registry_;
};

}  // namespace nhupdate_test
