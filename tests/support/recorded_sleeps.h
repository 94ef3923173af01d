#pragma once

// Takes the place of Sleep: each call is written down and returns at once.

#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class RecordedSleeps {
 public:
  // `during_sleep` is what happens in the meantime; it gets the sleep's number, counted from 1.
  explicit RecordedSleeps(std::function<void(int)> during_sleep = [](int) {})
      : during_sleep_(std::move(during_sleep)) {}

  [[nodiscard]] const std::vector<DWORD>& Milliseconds() const { return milliseconds_; }

 private:
  std::function<void(int)> during_sleep_;
  std::vector<DWORD> milliseconds_;
  INTERPOSER(Sleep) sleep_{[this](DWORD milliseconds) {
    milliseconds_.push_back(milliseconds);
    during_sleep_(static_cast<int>(milliseconds_.size()));
  }};
};

}  // namespace nhupdate_test
