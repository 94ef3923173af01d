#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/fake_process_table.h"
#include "tests/support/installed_product.h"
#include "tests/support/quiet_desktop.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

// The manager must be started before the process table is faked.
class StopUpdateManagersTest : public testing::Test {
 protected:
  StopUpdateManagersTest() {
    product_.Start();
    product_.ForgetRecords();
  }

  InstalledProduct product_;
};

TEST_F(StopUpdateManagersTest, ShowsNoBoxWhenAllOthersAreGone) {
  const QuietDesktop desktop;
  const FakeProcessTable table(
      {{.id = FakeProcessTable::kOwnId, .image_path = L"C:\\new\\NHUpdateManager.exe"},
       {.id = 8, .image_path = L"C:\\nhupdatemanager.EXE"}});

  EXPECT_EQ(product_.Manager().StopUpdateManagers(), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Skip terminate current process NHUpdateManager.exe({pid}).",
                          L"2|Target process nhupdatemanager.EXE(8) found, terminate it."));
  EXPECT_TRUE(desktop.Boxes().empty());
}

TEST_F(StopUpdateManagersTest, TellsTheUserOnceWhenOthersStay) {
  const QuietDesktop desktop;
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"C:\\NHUpdateManager.exe", .ends_when_terminated = false},
       {.id = 12, .image_path = L"C:\\NHUpdateManager.exe", .can_be_terminated = false}});

  EXPECT_EQ(product_.Manager().StopUpdateManagers(), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Target process NHUpdateManager.exe(8) found, terminate it.",
                          L"2|Target process NHUpdateManager.exe(12) found, terminate it.",
                          L"4|Process NHUpdateManager.exe(8) still found.",
                          L"4|Process NHUpdateManager.exe(12) still found.",
                          L"4|Fail to terminate NHUpdateManager."));
  EXPECT_THAT(desktop.Boxes(), ElementsAre(ShownBox{L"KEY_FAIL_NEED_STOP_NHUPDATEMANAGER",
                                                    L"KEY_UPDATE_TITLE", 0x40010, true}));
  EXPECT_TRUE(desktop.Sleeps().empty());
}

}  // namespace
}  // namespace nhupdate_test
