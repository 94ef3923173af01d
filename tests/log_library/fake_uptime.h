#pragma once

// Stops the library's clock for as long as the object lives. It runs on when it is told to.

#include "tests/support/interposer.h"

namespace nhupdate_test {

class FakeUptime {
 public:
  explicit FakeUptime(HMODULE library) : uptime_(library, [this] { return now_ms_; }) {}

  void Forward(ULONGLONG milliseconds) { now_ms_ += milliseconds; }

 private:
  ULONGLONG now_ms_ = ::GetTickCount64();
  INTERPOSER(GetTickCount64) uptime_;
};

}  // namespace nhupdate_test
