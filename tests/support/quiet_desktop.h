#pragma once

// For as long as the object lives message boxes and sleeps are written down, and end at once.

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/windows.h"
#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"

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

// The box that names the file or folder at which a copy failed.
[[nodiscard]] inline ShownBox CopyErrorBox(const std::wstring& path) {
  return {L"KEY_FAIL_COMMON_ERROR\n" + path, L"KEY_UPDATE_TITLE", 0x40010, true};
}

}  // namespace nhupdate_test
