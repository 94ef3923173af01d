#pragma once

// A fixture for tests that note what came of their runs, line by line; at the end of the test all
// of it is compared with a golden file.

#include "tests/support/golden.h"
#include "tests/support/scripted_shell.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class ToldTest : public testing::Test {
 protected:
  void TearDown() override {
    if (!told_.empty()) {
      ExpectGolden(told_);
    }
  }

  void TellLine(const std::wstring& line) { told_.push_back(line); }

  // Before each of several runs; an empty heading is left out.
  void TellHeading(const std::string& heading) {
    if (!heading.empty()) {
      TellLine(L"# " + std::wstring(heading.begin(), heading.end()));
    }
  }

  void TellLines(const std::vector<std::wstring>& lines) {
    told_.insert(told_.end(), lines.begin(), lines.end());
  }

  // What was done with the processes that were started.
  void TellEvents(const ScriptedShell& shell) {
    for (const std::string& event : shell.Events()) {
      TellLine(L"~ " + std::wstring(event.begin(), event.end()));
    }
  }

 private:
  std::vector<std::wstring> told_;
};

}  // namespace nhupdate_test
