#include "update/updater_refresh.h"

#include "tests/support/failing_copy.h"
#include "tests/unit/update/mechanism_test.h"

namespace nhupdate_test {
namespace {

class UpdaterRefreshTest : public MechanismTest {
 protected:
  UpdaterRefreshTest() {
    Add(L"\\Updater\\Updater.exe", "old");
    Add(L"\\Updater\\NewUpdater\\Updater.exe", "new");
  }

  void TellRefresh(const std::string& heading, const std::vector<ShellAnswer>& script) {
    TellRun(heading, script, [this] { return RefreshUpdater(Updater(), copy_, log_.Log()); });
  }

  [[nodiscard]] std::string InstalledUpdater() const {
    return ReadFileBytes(Updater() + L"\\Updater.exe");
  }

  void RemoveUpdater() const { EXPECT_TRUE(::DeleteFileW((Updater() + L"\\Updater.exe").c_str())); }
};

TEST_F(UpdaterRefreshTest, EndsWithoutAnUpdaterBeforeOrAfterTheCheck) {
  TellRefresh("GoneAfterTheCheck", {EndsWith(0, [this] { RemoveUpdater(); })});
  TellRefresh("GoneBeforeTheCheck", {});
}

TEST_F(UpdaterRefreshTest, CopiesUnlessTheUpdateOfTheUpdaterFailed) {
  const struct {
    const char* name;
    std::vector<ShellAnswer> script;
    const char* updater;
  } cases[] = {
      // The new updater was fetched earlier.
      {"NoNewUpdater", {EndsWith(1)}, "new"},
      {"CheckFailed", {EndsWith(2)}, "new"},
      {"CheckUnreadable", {EndsUnreadably()}, "new"},
      {"CheckNotLaunched", {FailsWith(ERROR_FILE_NOT_FOUND)}, "new"},
      // The new updater is fetched in this run.
      {"Updated", {EndsWith(0), EndsWith(0)}, "new"},
      {"UpdateUnreadable", {EndsWith(0), EndsUnreadably()}, "new"},
      {"UpdateFailed", {EndsWith(0), EndsWith(1)}, "old"},
      {"UpdateNotLaunched", {EndsWith(0), FailsWith(ERROR_ACCESS_DENIED)}, "old"},
  };
  for (const auto& [name, script, updater] : cases) {
    Add(L"\\Updater\\Updater.exe", "old");

    TellRefresh(name, script);

    EXPECT_EQ(InstalledUpdater(), updater) << name;
  }
}

TEST_F(UpdaterRefreshTest, TriesTheCopyUntilItSucceeds) {
  const FailingCopy copy(ERROR_SHARING_VIOLATION,
                         [&](const std::wstring&) { return copy.Calls() < 10; });

  TellRefresh("", {EndsWith(1)});

  EXPECT_EQ(InstalledUpdater(), "new");
  EXPECT_EQ(sleeps_.Milliseconds(), std::vector<DWORD>(9, 3000));
}

TEST_F(UpdaterRefreshTest, GivesUpTheCopyAfterTenFailuresAndTheirSleeps) {
  const FailingCopy copy(ERROR_SHARING_VIOLATION);

  TellRefresh("", {EndsWith(1)});

  EXPECT_EQ(InstalledUpdater(), "old");
  EXPECT_EQ(sleeps_.Milliseconds(), std::vector<DWORD>(10, 3000));
}

TEST_F(UpdaterRefreshTest, NeverDeletesSubFoldersOfTheUpdater) {
  Add(L"\\Updater\\NewUpdater\\Data\\new.txt");
  Add(L"\\Updater\\Data\\old.txt");

  TellRefresh("", {EndsWith(1)});

  EXPECT_THAT(ListTree(Updater() + L"\\Data"), ElementsAre(L"new.txt", L"old.txt"));
}

}  // namespace
}  // namespace nhupdate_test
