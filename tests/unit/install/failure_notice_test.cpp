#include "install/failure_notice.h"

#include "tests/support/basics.h"
#include "tests/support/recorded_boxes.h"

namespace nhupdate_test {
namespace {

TEST(FailureNoticeTest, HasItsTitleAndTextFromTheTextsAndThePathOnALineOfItsOwn) {
  const RecordedBoxes boxes;
  const StringTable strings = {{L"KEY_UPDATE_TITLE", L"Nimba Hub \u2013 Update"},
                               {L"K", L"100% %s"}};

  TellFailure(strings, L"K");
  TellFailure(strings, L"K", L"C:\\50% %d.txt");
  TellFailure({}, L"KEY_FAIL_COMMON_ERROR");
  TellFailure({}, L"KEY_FAIL_COMMON_ERROR", L"C:\\A");

  EXPECT_THAT(boxes.Shown(),
              ElementsAre(ErrorBoxOf(L"100% %s", L"Nimba Hub \u2013 Update"),
                          ErrorBoxOf(L"100% %s\nC:\\50% %d.txt", L"Nimba Hub \u2013 Update"),
                          // Without texts the keys are shown.
                          ErrorBoxOf(L"KEY_FAIL_COMMON_ERROR", L"KEY_UPDATE_TITLE"),
                          ErrorBoxOf(L"KEY_FAIL_COMMON_ERROR\nC:\\A", L"KEY_UPDATE_TITLE")));
}

}  // namespace
}  // namespace nhupdate_test
