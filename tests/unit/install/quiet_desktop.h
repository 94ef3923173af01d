#pragma once

// For as long as the object lives no message box is shown and nobody waits: both are written down.

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {

struct ShownBox {
  HWND owner = nullptr;
  std::wstring text;
  std::wstring caption;
  UINT style = 0;
};

class QuietDesktop {
 public:
  // `during_sleep` is called for each wait with its number, counted from 1.
  explicit QuietDesktop(std::function<void(int)> during_sleep = nullptr)
      : during_sleep_(std::move(during_sleep)) {}

  [[nodiscard]] const std::vector<ShownBox>& Boxes() const { return boxes_; }
  [[nodiscard]] const std::vector<DWORD>& Sleeps() const { return sleeps_; }

 private:
  std::function<void(int)> during_sleep_;
  std::vector<ShownBox> boxes_;
  std::vector<DWORD> sleeps_;
  Interposer<decltype(::MessageBoxW)> message_box_{
      "MessageBoxW", [this](HWND owner, const wchar_t* text, const wchar_t* caption, UINT style) {
        boxes_.push_back({owner, text, caption, style});
        return IDOK;
      }};
  Interposer<decltype(::Sleep)> sleep_{"Sleep", [this](DWORD milliseconds) {
                                         sleeps_.push_back(milliseconds);
                                         if (during_sleep_) {
                                           during_sleep_(static_cast<int>(sleeps_.size()));
                                         }
                                       }};
};

}  // namespace nhupdate_test
