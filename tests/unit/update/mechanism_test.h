#pragma once

// What the tests of the mechanisms share: a log in memory and a folder that passes for a product's,
// {base}. Nothing of a product is there but what a test puts there.

#include "base/product_folders.h"
#include "install/folder_copy.h"
#include "tests/support/recorded_log.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/scripted_shell.h"
#include "tests/support/told_test.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class MechanismTest : public ToldTest {
 protected:
  // Tells the records since the last time, and what the mechanism returned.
  void Tell(const std::string& heading, int result) {
    TellHeading(heading);
    TellLines(log_.Records());
    TellLine(L"= " + std::to_wstring(result));
    log_.ForgetRecords();
  }
  void Tell(int result) { Tell("", result); }

  // Runs the mechanism with children that answer by the script; tells what was done with them, too.
  template <typename Mechanism>
  int TellRun(const std::string& heading, const std::vector<ShellAnswer>& script,
              Mechanism mechanism) {
    const ScriptedShell shell(script);
    const int result = static_cast<int>(mechanism());
    Tell(heading, result);
    TellEvents(shell);
    return result;
  }

  [[nodiscard]] std::wstring Root() const { return scratch_.Path(); }
  [[nodiscard]] std::wstring Base() const { return Root() + L"\\Nimba Hub"; }
  [[nodiscard]] std::wstring Updater() const { return Base() + L"\\Updater"; }

  // Writes a file that is given relative to the base folder.
  void Add(const std::wstring& path, const std::string& bytes = "") const {
    WriteFileBytes(Base() + path, bytes);
  }

  ScratchFolder scratch_;
  RecordedLog log_{scratch_.Path()};
  RecordedSleeps sleeps_;
  std::wstring last_failed_path_;
  const ProductFolders folders_ =
      FoldersOfExecutable(Base() + L"\\NHUpdateManager\\NHUpdateManager.exe");
  CFolderCopy copy_{folders_, log_.Log(), last_failed_path_};
};

}  // namespace nhupdate_test
