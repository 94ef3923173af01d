#include "install/failure_notice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/recorded_boxes.h"

namespace nhupdate_test {
namespace {

using nhupdate::StringTable;
using testing::ElementsAre;

constexpr UINT kTopmostError = 0x40010;

TEST(FailureNoticeTest, HasItsTitleAndTextFromTheTexts) {
  const RecordedBoxes boxes;
  const StringTable strings = {{L"KEY_UPDATE_TITLE", L"Nimba Hub \u2013 Update"},
                               {L"K", L"100% %s"}};

  nhupdate::TellFailure(strings, L"K");

  EXPECT_THAT(boxes.Shown(),
              ElementsAre(ShownBox{L"100% %s", L"Nimba Hub \u2013 Update", kTopmostError, true}));
}

TEST(FailureNoticeTest, HasThePathOnALineOfItsOwn) {
  const RecordedBoxes boxes;
  const StringTable strings = {{L"KEY_UPDATE_TITLE", L"Update"}, {L"K", L"Failed."}};

  nhupdate::TellFailure(strings, L"K", L"C:\\50% %d.txt");

  EXPECT_THAT(boxes.Shown(),
              ElementsAre(ShownBox{L"Failed.\nC:\\50% %d.txt", L"Update", kTopmostError, true}));
}

TEST(FailureNoticeTest, ShowsTheKeysWithoutTexts) {
  const RecordedBoxes boxes;

  nhupdate::TellFailure({}, L"KEY_FAIL_COMMON_ERROR", L"C:\\A");

  EXPECT_THAT(boxes.Shown(), ElementsAre(ShownBox{L"KEY_FAIL_COMMON_ERROR\nC:\\A",
                                                  L"KEY_UPDATE_TITLE", kTopmostError, true}));
}

}  // namespace
}  // namespace nhupdate_test
