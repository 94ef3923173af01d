// The copy with which a refresh ends.

#include <gtest/gtest.h>

#include "tests/support/failing_copy.h"
#include "tests/unit/update/updater_refresh_test.h"

namespace nhupdate_test {
namespace {

class UpdaterRefreshCopyTest : public UpdaterRefreshTest {
 protected:
  static Lines FruitlessCheckLines() {
    return CheckLines({L"2|Launch updater success for check.", L"2|Updater exit = 1",
                       L"2|No new updater available."});
  }

  // The updater is in use each time.
  static Lines FailedCopyLines(int attempts) {
    Lines lines;
    for (int attempt = 0; attempt < attempts; ++attempt) {
      lines = Join({lines,
                    CopyLines(),
                    {L"4|Fail to copy file = 32", L"3|Copy fail, sleep 3 seconds and retry."}});
    }
    return lines;
  }
};

TEST_F(UpdaterRefreshCopyTest, IsTriedUntilItSucceeds) {
  ScriptedShell shell({EndsWith(1)});
  const FailingCopy copy(ERROR_SHARING_VIOLATION,
                         [&](const std::wstring&) { return copy.Calls() < 10; });

  const int result = RefreshUpdater();

  EXPECT_EQ(result, 1);
  EXPECT_EQ(InstalledUpdater(), "new");
  EXPECT_EQ(sleeps_.Milliseconds(), std::vector<DWORD>(9, 3000));
  EXPECT_EQ(product_.Transcript(),
            Join({FruitlessCheckLines(), FailedCopyLines(9), CopyLines(), CopiedLines()}));
}

TEST_F(UpdaterRefreshCopyTest, IsGivenUpAfterTenFailuresAndTheirSleeps) {
  ScriptedShell shell({EndsWith(1)});
  const FailingCopy copy(ERROR_SHARING_VIOLATION);

  const int result = RefreshUpdater();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(InstalledUpdater(), "old");
  EXPECT_EQ(sleeps_.Milliseconds(), std::vector<DWORD>(10, 3000));
  EXPECT_EQ(product_.Transcript(),
            Join({FruitlessCheckLines(), FailedCopyLines(10), {L"4|Fail to copy folder."}}));
}

TEST_F(UpdaterRefreshCopyTest, NeverDeletesSubFoldersOfTheUpdater) {
  AddFile(L"\\Updater\\NewUpdater\\Data\\new.txt");
  AddFile(L"\\Updater\\Data\\old.txt");
  ScriptedShell shell({EndsWith(1)});

  std::ignore = RefreshUpdater();

  EXPECT_THAT(ListTree(product_.Base() + L"\\Updater\\Data"),
              testing::ElementsAre(L"new.txt", L"old.txt"));
}

}  // namespace
}  // namespace nhupdate_test
