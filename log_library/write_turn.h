#pragma once

// Who may write: one process after the other. Appending to a file is one indivisible step on NTFS
// but not everywhere, the records of all are to stand in the order of their times, and a full file
// is to be put aside before anybody writes on. A rename is one step everywhere and never replaces
// anything, so files are rotated without a turn too.

#include <chrono>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "log_library/fine_clock.h"
#include "log_library/standing_turn.h"

namespace nhupdate {

// The mutex that all processes of the machine share, and in its place, while one process writes
// alone, its standing turn. Nobody is kept waiting for long: anyone may hold the mutex, by ill will
// too, and a log is not worth a program that stands still.
class CWriterQueue {
 public:
  static constexpr std::chrono::seconds kPatience{2};

  // Makes or opens the mutex. Without one, which is no failure, there are never any turns.
  void Open();

  // Waits for the mutex as long as there is patience: two seconds for all calls together, whether
  // they waited in vain or not. Each turn brings back a little, so that writers who are merely busy
  // don't use up one another's: two milliseconds, and a multiple of the time that the turn itself
  // took, which is longer for everyone on a machine under load. When it is used up, nothing is
  // waited for in the next ten seconds.
  [[nodiscard]] bool Enter();

  void Leave();

 private:
  [[nodiscard]] std::chrono::milliseconds WaitLimit();
  [[nodiscard]] bool WaitForMutex(std::chrono::milliseconds limit) const;
  // Of another process, which is taken back. When that takes too long, the mutex is let go.
  [[nodiscard]] bool WaitForStandingTurn(CFineClock::time_point end);
  void SpendPatience(CFineClock::duration waited);
  void RegainPatience(CFineClock::duration turn);

  UniqueKernelHandle mutex_;
  CStandingTurn standing_turn_;
  bool is_standing_ = false;  // the turn is a standing one
  CFineClock::duration patience_ = kPatience;
  CFineClock::time_point turn_begin_;
  ULONGLONG no_wait_before_ = 0;  // in the milliseconds of the system's uptime
};

// One turn, from construction to destruction; none if it can't be had, and then others may write
// and rotate at the same time.
class CWriteTurn {
 public:
  explicit CWriteTurn(CWriterQueue& queue) : queue_(queue), is_ours_(queue.Enter()) {}
  ~CWriteTurn() {
    if (is_ours_) {
      queue_.Leave();
    }
  }
  CWriteTurn(const CWriteTurn&) = delete;
  CWriteTurn& operator=(const CWriteTurn&) = delete;

 private:
  CWriterQueue& queue_;
  bool is_ours_;
};

}  // namespace nhupdate
