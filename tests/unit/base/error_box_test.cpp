#include "base/error_box.h"

#include <gtest/gtest.h>

#include <string>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

struct Box {
  HWND owner = nullptr;
  std::wstring text;
  std::wstring caption;
  UINT style = 0;
  int shown = 0;
};

Box ShowErrorBox(const std::wstring& title, const std::wstring& text, int answer = IDOK) {
  Box box;
  Interposer<decltype(::MessageBoxW)> message_box(
      "MessageBoxW",
      [&](HWND owner, const wchar_t* box_text, const wchar_t* caption, UINT style) -> int {
        box = {owner, box_text, caption, style, box.shown + 1};
        return answer;
      });
  nhupdate::ShowErrorBox(title, text);
  return box;
}

TEST(ErrorBoxTest, IsATopmostErrorOwnedByTheDesktop) {
  const Box box = ShowErrorBox(L"Update", L"The update failed.");

  EXPECT_EQ(box.shown, 1);
  EXPECT_EQ(box.owner, ::GetDesktopWindow());
  EXPECT_EQ(box.style, 0x40010U);
}

TEST(ErrorBoxTest, HasTitleAndTextAsTheyStand) {
  const Box box = ShowErrorBox(L"Nimba Hub \u2013 %d", L"100% %s %n\nC:\\A");

  EXPECT_EQ(box.caption, L"Nimba Hub \u2013 %d");
  EXPECT_EQ(box.text, L"100% %s %n\nC:\\A");
  EXPECT_EQ(ShowErrorBox(L"", L"").text, L"");
}

TEST(ErrorBoxTest, IsShownOnceWhateverTheAnswer) {
  for (const int answer : {0, -1, IDCANCEL}) {
    EXPECT_EQ(ShowErrorBox(L"Update", L"text", answer).shown, 1);
  }
}

}  // namespace
}  // namespace nhupdate_test
