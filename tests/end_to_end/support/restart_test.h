#pragma once

// A run of the program is ended at one moment after the other: right before each of its changes, in
// the middle of a copy, or for want of memory. Started again it has to leave what an undisturbed
// run leaves, in files and registry alike. The one exception is what stands in the log, which tells
// of both runs.

#include <cstdint>
#include <functional>
#include <string>

#include "tests/end_to_end/support/end_to_end_test.h"

namespace nhupdate_test {

struct DisturbedRun {
  // Puts into the installed product, version 1.0.0, what the run finds.
  std::function<void()> prepare;
  std::wstring executable;
  std::wstring arguments;
  DWORD exit_code = 0;
  // At which it is ended at least; fewer would mean that they are not all seen.
  int fewest_moments = 0;
  // What of it is ended: by default the program that is started, else one of its later stages.
  std::wstring ended_executable = executable;
  std::wstring ended_arguments = arguments;
  // Puts what that stage finds, when it is a later one.
  std::function<void()> prepare_stage = [] {};
};

class RestartTest : public EndToEndTest {
 protected:
  // What an update has to deal with: old files, files of the user, empty folders.
  void PutTracesOfUse() const;

  // The run when nothing disturbs it.
  void ExpectGoldenRunOf(const DisturbedRun& run);

  // What the ended program had started by then runs to its end, as after the program alone has
  // crashed. Where not every moment is tried, they are `stride` apart.
  void EndAndRestartAtEveryChange(const DisturbedRun& run, int stride = 1);
  void StarveAndRestart(const DisturbedRun& run, int stride);
  // While this file, whose final size is given, is being written: at its beginning, after a third
  // and after two thirds.
  void EndAndRestartInTheCopyOf(const DisturbedRun& run, const std::wstring& file,
                                std::uint64_t size);

 private:
  // What an undisturbed run leaves.
  struct End {
    Tree files;
    std::string product_keys;
  };

  void StartAfresh(const DisturbedRun& run) const;
  [[nodiscard]] End RunUndisturbed(const DisturbedRun& run) const;
  // Returns whether the program was ended by what was put into its way, with that exit code.
  [[nodiscard]] bool EndAndRestart(const DisturbedRun& run, const End& end,
                                   const ProgramStart& disturbed, DWORD exit_code) const;
  // `moment` is the member of the start that says when.
  void EndAndRestartAtEvery(const DisturbedRun& run, int ProgramStart::*moment, DWORD exit_code,
                            int stride);
};

}  // namespace nhupdate_test
