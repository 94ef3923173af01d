#pragma once

// The fixture of the end-to-end tests: an installed product, and runs of its program that are
// compared whole with golden files (tests/support/golden.h).

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "tests/end_to_end/support/child_journal.h"
#include "tests/end_to_end/support/installed_hub.h"
#include "tests/end_to_end/support/log_source.h"
#include "tests/end_to_end/support/program_run.h"
#include "tests/end_to_end/support/tree.h"

namespace nhupdate_test {

class EndToEndTest : public testing::Test {
 protected:
  // The length of the root folder's path counts when it is not 0.
  explicit EndToEndTest(std::size_t root_length = 0);

  // Runs the installed program, or another one, elevated or not.
  [[nodiscard]] ProgramRun Run(const std::wstring& arguments) {
    return RunFrom(hub_.Manager(), arguments);
  }
  [[nodiscard]] ProgramRun RunUnelevated(const std::wstring& arguments) {
    return RunAs({.executable = hub_.Manager(), .arguments = arguments, .is_elevated = false});
  }
  [[nodiscard]] ProgramRun RunFrom(const std::wstring& executable, const std::wstring& arguments) {
    return RunAs({.executable = executable, .arguments = arguments});
  }
  [[nodiscard]] ProgramRun RunAs(const ProgramStart& start);

  // Compares the last run, and what it has done, with the golden file (see there for `part`):
  //   - every process of the program with its exit code, all its records, and how it started
  //   others;
  //   - what it wrote to the console, and the message boxes;
  //   - what has become of the files, in the test's folder and in the folder for data;
  //   - the product's registry values.
  // {base}, {root}, {scratch}, {data} and {system} stand for folders, {pid} for the id of the
  // process itself.
  void ExpectGoldenRun(DWORD exit_code, const ProgramRun& run, const std::string& part = {});

  // A process id that shows as {name}.
  void NameProcess(DWORD id, const std::wstring& name) { names_.emplace_back(id, name); }

  // Everything that a run may change, but for the registry.
  [[nodiscard]] Tree Files() const;

  CInstalledHub hub_;

 private:
  [[nodiscard]] std::string Describe(const ProgramRun& run);
  [[nodiscard]] std::string DescribeProcess(const ManagerProcess& process);
  [[nodiscard]] std::string DescribeBoxes(const ProgramRun& run) const;
  [[nodiscard]] std::wstring Neutral(std::wstring record, DWORD process_id);

  std::vector<std::pair<DWORD, std::wstring>> names_;
  // Before the last run.
  Tree files_;
  std::size_t record_count_ = 0;
  std::size_t child_count_ = 0;
  // Behind it, as far as they have not been described yet.
  std::vector<HubLogRecord> records_;
  std::vector<ChildStart> children_;
  bool has_launch_failed_ = false;
};

}  // namespace nhupdate_test
