#pragma once

// Stops the library's clock for as long as the object lives. It runs on when it is told to.

#include "tests/log_library/loaded_log_library.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

class FakeUptime {
 public:
  explicit FakeUptime(const LoadedLogLibrary& library)
      : uptime_(library.Module(), "GetTickCount64", [this] { return now_ms_; }) {}

  void Forward(ULONGLONG milliseconds) { now_ms_ += milliseconds; }

 private:
  ULONGLONG now_ms_ = ::GetTickCount64();
  Interposer<ULONGLONG()> uptime_;
};

}  // namespace nhupdate_test
