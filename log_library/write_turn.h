#pragma once

// Who may write: one process after the other. Appending to a file is one indivisible step on NTFS
// but not everywhere, and a file must not be rotated while another process is about to do the same.

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

// The mutex that all processes of the machine share. Nobody is kept waiting for long: anyone may
// hold the mutex, by ill will too, and a log is not worth a program that stands still.
class CWriterQueue {
 public:
  // Makes or opens the mutex. Without one, which is no failure, there are never any turns, and so
  // no rotation.
  void Open();

  // Waits for the mutex, a second at the most; after waiting in vain not at all for ten seconds.
  [[nodiscard]] bool Enter();

  void Leave();

 private:
  UniqueKernelHandle mutex_;
  ULONGLONG no_wait_before_ = 0;  // in the milliseconds of the system's uptime
};

// One turn, from construction to destruction.
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

  // False when the others could not be kept out.
  [[nodiscard]] bool IsOurs() const { return is_ours_; }

 private:
  CWriterQueue& queue_;
  bool is_ours_;
};

}  // namespace nhupdate
