// An executable in a drive's root has no folder above its own, and one whose path isn't known has
// none either: there is no product to clean up, and what lies on the drive is none of the program's
// business.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "app/manager_center.h"
#include "tests/support/fake_listing.h"
#include "tests/support/fake_process_table.h"
#include "tests/support/interposer.h"
#include "tests/support/product_surroundings.h"
#include "tests/support/quiet_desktop.h"
#include "tests/support/recorded_tools.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

class NoBaseFolderTest : public testing::TestWithParam<std::wstring> {
 protected:
  nhupdate::CManagerCenter manager_;
  const QuietDesktop desktop_;
  const ProductSurroundings surroundings_{{.executable = GetParam(), .program_data = L""}};
  const FakeProcessTable no_processes_;
  const RecordedTools tools_;
  const FakeListing listing_{{}, ERROR_PATH_NOT_FOUND};
  INTERPOSER(CreateDirectoryW) create_{
      [](const wchar_t*, SECURITY_ATTRIBUTES*) -> BOOL { return FALSE; }};
  INTERPOSER(RegCreateKeyExW) key_{[](HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM,
                                      SECURITY_ATTRIBUTES*, HKEY*,
                                      DWORD*) -> LSTATUS { return ERROR_ACCESS_DENIED; }};
  INTERPOSER(DeleteFileW) delete_file_{[](const wchar_t*) -> BOOL { return TRUE; }};
};

TEST_P(NoBaseFolderTest, AFinalUpdateNeverLooksAtTheDrivesRoot) {
  manager_.Initialize();

  EXPECT_EQ(manager_.InstallSequence(nhupdate::InstallKind::kLastUpdateStage), 0);

  EXPECT_THAT(listing_.Patterns(), ElementsAre(L"\\Updater\\App\\*.*", L"\\Updater\\App\\*.*"));
  EXPECT_EQ(delete_file_.Calls(), 0);
}

TEST_P(NoBaseFolderTest, ASelfUpdateNeverCopiesTheDrive) {
  manager_.Initialize();

  EXPECT_EQ(manager_.SelfUpdate(), 16);

  EXPECT_TRUE(listing_.Patterns().empty());
  EXPECT_THAT(desktop_.Boxes(),
              ElementsAre(ShownBox{L"KEY_FAIL_COMMON_ERROR", L"KEY_UPDATE_TITLE", 0x40010, true}));
}

INSTANTIATE_TEST_SUITE_P(WhereverItIs, NoBaseFolderTest,
                         testing::Values(L"C:\\NHUpdateManager.exe", L""));

}  // namespace
}  // namespace nhupdate_test
