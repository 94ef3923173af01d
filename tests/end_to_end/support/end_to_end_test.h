#pragma once

// The fixture of the end-to-end tests: an installed product, runs of its program, and what they
// left behind as text that can be compared whole.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "tests/end_to_end/support/child_journal.h"
#include "tests/end_to_end/support/expected_product_keys.h"
#include "tests/end_to_end/support/expected_records.h"
#include "tests/end_to_end/support/installed_hub.h"
#include "tests/end_to_end/support/product_registry.h"
#include "tests/end_to_end/support/program_run.h"
#include "tests/end_to_end/support/texts.h"
#include "tests/end_to_end/support/tree_description.h"

namespace nhupdate_test {

class EndToEndTest : public testing::Test {
 protected:
  // The length of the root folder's path counts when it is not 0.
  explicit EndToEndTest(std::size_t root_length = 0);

  // Runs the installed program, or another one, elevated.
  [[nodiscard]] ProgramRun Run(const std::wstring& arguments) const;
  [[nodiscard]] ProgramRun RunStaged(const std::wstring& arguments) const;
  [[nodiscard]] ProgramRun RunUnelevated(const std::wstring& arguments) const;

  // Every record of the program, from every process, in the order in which they were written, as
  // "level|text" lines with {base}, {root}, {data} and {scratch} for folders and {pid} for the id
  // of the process that wrote it.
  [[nodiscard]] std::string Transcript() const;

  // The same for one process.
  [[nodiscard]] std::string TranscriptOf(DWORD process_id) const;

  // How children were started, one line each: file name, working folder, show state, whether the
  // parent is the given process, and the command line.
  [[nodiscard]] std::string Children(const ProgramRun& run) const;

  // What the grants were started with, in any order: they run at the same time.
  [[nodiscard]] std::vector<std::string> GrantParameters() const;
  [[nodiscard]] static std::vector<std::string> ExpectedGrantParameters();

  // The error of a launch whose executable another process holds without sharing. Wine's shell
  // shows a box of its own for that, which costs it the error.
  [[nodiscard]] static std::string WithoutSharing();

  // Exactly one box with the error icon. The text has the names of folders as a transcript has.
  void ExpectErrorBox(const ProgramRun& run, const std::string& text,
                      const std::string& caption = kTitle) const;

  // The same, with boxes of the shell before it, which has reported the failed launch itself.
  void ExpectErrorBoxAfterTheShells(const ProgramRun& run, const std::string& text) const;

  // A process id that shows as {name} in the transcripts.
  void NameProcess(DWORD id, const std::string& name) { names_.emplace_back(id, name); }

  CInstalledHub hub_;

 private:
  [[nodiscard]] std::string Records(DWORD process_id) const;
  void ExpectErrorBox(const WatchedBox& box, const std::string& text,
                      const std::string& caption) const;

  std::vector<std::pair<DWORD, std::string>> names_;
};

}  // namespace nhupdate_test
