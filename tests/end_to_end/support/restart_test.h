#pragma once

// A run of the program is ended right before each of its changes in turn, or for want of memory at
// one allocation after the other. Started again with the same switch it has to leave what an
// undisturbed run leaves, in files and registry alike. The one exception is what stands in the log,
// which tells of both runs.

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
};

class RestartTest : public EndToEndTest {
 protected:
  // What an update has to deal with: old files, files of the user, empty folders.
  void PutTracesOfUse() const;

  // Both return how often the program was ended. What it had started by then ran to its end, as
  // after the program alone has crashed. 0 after the first failure. The undisturbed run is that of
  // the test's golden file.
  [[nodiscard]] int EndAndRestartAtEveryChange(const DisturbedRun& run);

  // Only each `stride`-th allocation fails, from the first one on.
  [[nodiscard]] int StarveAndRestart(const DisturbedRun& run, int stride);

 private:
  // What an undisturbed run leaves.
  struct End {
    Tree files;
    std::string product_keys;
  };

  void StartAfresh(const DisturbedRun& run) const;
  [[nodiscard]] End RunUndisturbed(const DisturbedRun& run);
  // Returns whether the program was ended by what was put into its way, with that exit code.
  [[nodiscard]] bool EndAndRestart(const DisturbedRun& run, const End& end,
                                   const ProgramStart& disturbed, DWORD exit_code) const;
};

}  // namespace nhupdate_test
