#pragma once

// Runs the program, and all that it starts, to the end.

#include <functional>
#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/end_to_end/support/box_watcher.h"
#include "tests/end_to_end/support/process_job.h"

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
  // When not 0, the program is ended right before that change, or gets no memory at that
  // allocation; see program_end.h.
  int end_before_change = 0;
  int fail_allocation = 0;
  // If set, the program is ended with kEndedByTest as soon as this returns true.
  std::function<bool()> end_when = {};
  // Called again and again while anything is running.
  std::function<void()> while_running = {};
  // Which button of a box is pressed; OK if not set. Called by another thread.
  BoxAnswer answer = {};
};

struct ProgramRun {
  // False when the time limit was reached; everything that was still running was ended then.
  bool has_ended = false;
  DWORD exit_code = 0;
  DWORD process_id = 0;
  std::string output;
  std::vector<WatchedBox> boxes;
  // The program's own processes, in the order in which they began; see process_job.h.
  std::vector<ManagerProcess> managers;
  // The ids of all processes, in the order in which they ended.
  std::vector<DWORD> ends;
};

[[nodiscard]] ProgramRun RunToTheEnd(const ProgramStart& start);

}  // namespace nhupdate_test
