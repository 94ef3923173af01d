#include "tests/end_to_end/support/box_watcher.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "base/windows.h"

namespace nhupdate_test {
namespace {

constexpr ULONGLONG kTimeLimitMs = 10'000;

// A window of the class that message boxes have.
class CBox {
 public:
  CBox()
      : window_(::CreateWindowExW(0, L"#32770", L"caption", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                  nullptr, nullptr, nullptr, nullptr)) {}
  ~CBox() { ::DestroyWindow(window_); }
  CBox(const CBox&) = delete;
  CBox& operator=(const CBox&) = delete;

  void AddText() const {
    constexpr std::uintptr_t kTextId = 0xFFFF;
    ::CreateWindowExW(0, L"Static", L"text", WS_CHILD | WS_VISIBLE, 0, 0, 50, 50, window_,
                      reinterpret_cast<HMENU>(kTextId), nullptr, nullptr);
  }

  // Without an image.
  [[nodiscard]] HWND AddIcon() const {
    return ::CreateWindowExW(0, L"Static", nullptr, WS_CHILD | WS_VISIBLE | SS_ICON, 0, 0, 50, 50,
                             window_, nullptr, nullptr, nullptr);
  }

  // Whether somebody presses the button within the time.
  [[nodiscard]] bool IsAnsweredWithin(ULONGLONG milliseconds) const {
    const ULONGLONG end = ::GetTickCount64() + milliseconds;
    while (::GetTickCount64() < end) {
      MSG message = {};
      while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.hwnd == window_ && message.message == WM_COMMAND && message.wParam == IDOK) {
          return true;
        }
        ::DispatchMessageW(&message);
      }
      ::Sleep(1);
    }
    return false;
  }

 private:
  HWND window_;
};

TEST(BoxWatcherTest, AnswersABoxWhenItsTextIsThere) {
  CBoxWatcher watcher;
  const CBox box;

  const bool is_answered_without_text = box.IsAnsweredWithin(200);
  box.AddText();
  const bool is_answered = box.IsAnsweredWithin(kTimeLimitMs);

  EXPECT_FALSE(is_answered_without_text);
  EXPECT_TRUE(is_answered);
  const std::vector<WatchedBox> boxes = watcher.Finish();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].caption, "caption");
  EXPECT_EQ(boxes[0].text, "text");
  EXPECT_FALSE(boxes[0].has_red_icon);
}

TEST(BoxWatcherTest, WaitsUntilTheIconIsDrawn) {
  CBoxWatcher watcher;
  const CBox box;
  const HWND icon = box.AddIcon();
  box.AddText();

  const bool is_answered_without_image = box.IsAnsweredWithin(2'000);
  ::SendMessageW(icon, STM_SETICON, reinterpret_cast<WPARAM>(::LoadIconW(nullptr, IDI_ERROR)), 0);
  const bool is_answered = box.IsAnsweredWithin(kTimeLimitMs);

  EXPECT_FALSE(is_answered_without_image);
  EXPECT_TRUE(is_answered);
  const std::vector<WatchedBox> boxes = watcher.Finish();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_TRUE(boxes[0].has_red_icon);
}

TEST(BoxWatcherTest, AnswersABoxOnce) {
  CBoxWatcher watcher;
  const CBox box;
  box.AddText();

  const bool is_answered = box.IsAnsweredWithin(kTimeLimitMs);
  const bool is_answered_again = box.IsAnsweredWithin(200);

  EXPECT_TRUE(is_answered);
  EXPECT_FALSE(is_answered_again);
}

}  // namespace
}  // namespace nhupdate_test
