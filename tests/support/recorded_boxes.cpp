#include "tests/support/recorded_boxes.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace nhupdate_test {

namespace {

// No real window has a handle of so many bits.
HWND Desktop() {
  return reinterpret_cast<HWND>(std::uintptr_t{0x7DE5C0701});
}

}  // namespace

ShownBox ErrorBoxOf(const std::wstring& text, const std::wstring& caption) {
  return {.text = text, .caption = caption, .style = 0x40010, .is_owned_by_desktop = true};
}

void PrintTo(const ShownBox& box, std::ostream* stream) {
  *stream << "box " << testing::PrintToString(box.text) << ", caption "
          << testing::PrintToString(box.caption) << ", style 0x" << std::hex << box.style
          << std::dec << (box.is_owned_by_desktop ? ", of the desktop" : ", of another window");
}

RecordedBoxes::RecordedBoxes()
    : desktop_window_([] { return Desktop(); }),
      message_box_([this](HWND owner, const wchar_t* text, const wchar_t* caption, UINT style) {
        shown_.push_back({text, caption, style, owner == Desktop()});
        return IDOK;
      }) {}

}  // namespace nhupdate_test
