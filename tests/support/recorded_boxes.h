#pragma once

// Takes the place of message boxes: each is written down and answered at once.

#include <gtest/gtest.h>

#include <cstdint>
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
[[nodiscard]] inline ShownBox ErrorBoxOf(const std::wstring& text, const std::wstring& caption) {
  return {.text = text, .caption = caption, .style = 0x40010, .is_owned_by_desktop = true};
}

inline void PrintTo(const ShownBox& box, std::ostream* stream) {
  *stream << "box " << testing::PrintToString(box.text) << ", caption "
          << testing::PrintToString(box.caption) << ", style 0x" << std::hex << box.style
          << std::dec << (box.is_owned_by_desktop ? ", of the desktop" : ", of another window");
}

class RecordedBoxes {
 public:
  [[nodiscard]] const std::vector<ShownBox>& Shown() const { return shown_; }

 private:
  // No real window has a handle of so many bits.
  const HWND desktop_ = reinterpret_cast<HWND>(std::uintptr_t{0x7DE5C0701});
  std::vector<ShownBox> shown_;
  INTERPOSER(GetDesktopWindow) desktop_window_{[this] { return desktop_; }};
  INTERPOSER(MessageBoxW) message_box_{
      [this](HWND owner, const wchar_t* text, const wchar_t* caption, UINT style) {
        shown_.push_back({text, caption, style, owner == desktop_});
        return IDOK;
      }};
};

}  // namespace nhupdate_test
