#pragma once

// For as long as the object lives message boxes and sleeps are written down, and end at once.

#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class QuietDesktop {
 public:
  // `during_sleep` is called for each wait with its number, counted from 1.
  explicit QuietDesktop(std::function<void(int)> during_sleep = [](int) {})
      : sleeps_(std::move(during_sleep)) {}

  [[nodiscard]] const std::vector<ShownBox>& Boxes() const { return boxes_.Shown(); }
  [[nodiscard]] const std::vector<DWORD>& Sleeps() const { return sleeps_.Milliseconds(); }

 private:
  RecordedBoxes boxes_;
  RecordedSleeps sleeps_;
};

}  // namespace nhupdate_test
