#include "base/error_box.h"

#include "tests/support/recorded_boxes.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(ErrorBoxTest, IsATopmostErrorOfTheDesktopWithTitleAndTextAsTheyStand) {
  const RecordedBoxes boxes;

  ShowErrorBox(L"Nimba Hub \u2013 %d", L"100% %s %n\nC:\\A");
  ShowErrorBox(L"", L"");

  EXPECT_THAT(boxes.Shown(), ElementsAre(ErrorBoxOf(L"100% %s %n\nC:\\A", L"Nimba Hub \u2013 %d"),
                                         ErrorBoxOf(L"", L"")));
}

TEST(ErrorBoxTest, IsShownOnceWhateverTheAnswer) {
  for (const int answer : {0, -1, IDCANCEL}) {
    INTERPOSER(MessageBoxW) message_box(Answers(answer));

    ShowErrorBox(L"Update", L"text");

    EXPECT_EQ(message_box.Calls(), 1);
  }
}

}  // namespace
}  // namespace nhupdate_test
