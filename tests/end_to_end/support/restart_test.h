#pragma once

// A run of the program is ended right before each of its changes in turn. Started again with the
// same switch it has to leave what an undisturbed run leaves, in files and registry alike. The one
// exception is what stands in the log, which tells of both runs.

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
  // That it makes at least; fewer would mean that they are not all seen.
  int fewest_changes = 0;
};

class RestartTest : public EndToEndTest {
 protected:
  // What an update has to deal with: old files, files of the user, empty folders.
  void PutTracesOfUse() const;

  // Ends the program before each of its own changes. What it had started by then runs to its end,
  // as after the program alone has crashed. The undisturbed run is that of the test's golden file.
  void EndAndRestartAtEveryChange(const DisturbedRun& run);

 private:
  void StartAfresh(const DisturbedRun& run) const;
};

}  // namespace nhupdate_test
