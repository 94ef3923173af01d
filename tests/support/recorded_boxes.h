#pragma once

// Takes the place of message boxes: each is written down and answered at once.

#include <ostream>
#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

struct ShownBox {
  std::wstring text;
  std::wstring caption;
  UINT style = 0;
  bool is_owned_by_desktop = false;

  bool operator==(const ShownBox&) const = default;
};

// An error box of the program.
[[nodiscard]] ShownBox ErrorBoxOf(const std::wstring& text, const std::wstring& caption);

void PrintTo(const ShownBox& box, std::ostream* stream);

class RecordedBoxes {
 public:
  RecordedBoxes();
  RecordedBoxes(const RecordedBoxes&) = delete;
  RecordedBoxes& operator=(const RecordedBoxes&) = delete;

  [[nodiscard]] const std::vector<ShownBox>& Shown() const { return shown_; }

 private:
  std::vector<ShownBox> shown_;
  INTERPOSER(GetDesktopWindow) desktop_window_;
  INTERPOSER(MessageBoxW) message_box_;
};

}  // namespace nhupdate_test
