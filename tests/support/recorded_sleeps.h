#pragma once

// Takes the place of waiting: each sleep is written down and over at once.

#include <vector>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

class RecordedSleeps {
 public:
  RecordedSleeps()
      : sleep_("Sleep", [this](DWORD milliseconds) { milliseconds_.push_back(milliseconds); }) {}
  RecordedSleeps(const RecordedSleeps&) = delete;
  RecordedSleeps& operator=(const RecordedSleeps&) = delete;

  [[nodiscard]] const std::vector<DWORD>& Milliseconds() const { return milliseconds_; }

 private:
  std::vector<DWORD> milliseconds_;
  Interposer<decltype(::Sleep)> sleep_;
};

}  // namespace nhupdate_test
