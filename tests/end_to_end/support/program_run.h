#pragma once

// Runs the program, and all that it starts, to the end.

#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/end_to_end/support/box_watcher.h"

namespace nhupdate_test {

enum class Streams {
  kPiped,   // standard output goes into a pipe
  kNone,    // no standard handles at all and no console
  kClosed,  // standard output is a pipe that nobody reads
};

struct ProgramStart {
  std::wstring executable;
  std::wstring arguments;
  bool is_elevated = true;
  Streams streams = Streams::kPiped;
  DWORD time_limit_ms = 30'000;
  // When not 0, the program is ended right before that change; see program_end.h.
  int end_before_change = 0;
};

// A process of the program, the one that was started itself or a later stage.
struct ManagerProcess {
  DWORD id = 0;
  std::wstring path;
  DWORD exit_code = 0;
};

struct ProgramRun {
  // False when the time limit was reached; everything that was still running was ended then.
  bool has_ended = false;
  DWORD exit_code = 0;
  DWORD process_id = 0;
  std::string output;
  std::vector<ShownBox> boxes;
  std::vector<ManagerProcess> managers;
};

[[nodiscard]] ProgramRun RunToTheEnd(const ProgramStart& start);

// The linked, not elevated token of this process; a test failure and null when there is none.
[[nodiscard]] HANDLE OpenUnelevatedToken();

}  // namespace nhupdate_test
