#include <gtest/gtest.h>

#include <string>

#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
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

Box ShowErrorBox(InstalledProduct& product, const std::wstring& text, int answer = IDOK) {
  const nhupdate::CManagerCenter& manager = product.Manager();
  Box box;
  INTERPOSER(MessageBoxW) message_box(
      [&](HWND owner, const wchar_t* box_text, const wchar_t* caption, UINT style) -> int {
        box = {owner, box_text, caption, style, box.shown + 1};
        return answer;
      });
  manager.ShowErrorBox(text);
  return box;
}

TEST(ShowErrorBoxTest, ShowsATopmostErrorOwnedByTheDesktop) {
  InstalledProduct product;

  const Box box = ShowErrorBox(product, L"The update failed.");

  EXPECT_EQ(box.shown, 1);
  EXPECT_EQ(box.owner, ::GetDesktopWindow());
  EXPECT_EQ(box.text, L"The update failed.");
  EXPECT_EQ(box.style, 0x40010U);
}

TEST(ShowErrorBoxTest, TakesItsCaptionFromTheTexts) {
  InstalledProduct product;
  const std::wstring file = product.Module() + L"\\Config\\texts.json";
  WriteFileBytes(file, "{\"KEY_UPDATE_TITLE\":\"Nimba Hub \xE2\x80\x93 Update\"}");
  product.Manager().LoadStrings(file);

  EXPECT_EQ(ShowErrorBox(product, L"text").caption, L"Nimba Hub \u2013 Update");
}

TEST(ShowErrorBoxTest, HasTheKeyForACaptionWithoutTexts) {
  InstalledProduct product;

  EXPECT_EQ(ShowErrorBox(product, L"text").caption, L"KEY_UPDATE_TITLE");
}

TEST(ShowErrorBoxTest, ShowsTheTextAsItStands) {
  InstalledProduct product;

  EXPECT_EQ(ShowErrorBox(product, L"100% %s %n\nC:\\A").text, L"100% %s %n\nC:\\A");
  EXPECT_EQ(ShowErrorBox(product, L"").text, L"");
}

TEST(ShowErrorBoxTest, CaresForNoAnswerAndLogsNothing) {
  for (const int answer : {0, -1, IDCANCEL}) {
    InstalledProduct product;

    EXPECT_EQ(ShowErrorBox(product, L"text", answer).shown, 1);

    EXPECT_TRUE(product.Transcript().empty());
  }
}

}  // namespace
}  // namespace nhupdate_test
