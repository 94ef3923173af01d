#include "update/nimba_cast_installation.h"

#include "tests/support/failing_copy.h"
#include "tests/unit/update/mechanism_test.h"

namespace nhupdate_test {
namespace {

// The updater "downloads" a manager for NimbaCast by already having it.
class NimbaCastInstallationTest : public MechanismTest {
 protected:
  NimbaCastInstallationTest() {
    Add(L"\\Updater\\Updater.exe");
    Add(L"\\Updater\\App\\CSUpdateManager\\CSUpdateManager.exe");
  }

  int TellInstallation(const std::string& heading, const std::vector<ShellAnswer>& script) {
    return TellRun(heading, script,
                   [this] { return InstallNimbaCast(folders_, copy_, log_.Log()); });
  }

  [[nodiscard]] std::wstring NimbaCast() const { return Root() + L"\\NimbaCast"; }
};

TEST_F(NimbaCastInstallationTest, JudgesTheDownloadAndClosesItsProcess) {
  const struct {
    const char* name;
    std::vector<ShellAnswer> script;
  } cases[] = {
      {"NotLaunched", {FailsWith(ERROR_ACCESS_DENIED)}},
      {"Ends1", {EndsWith(1)}},
      {"Succeeds", {EndsWith(0), EndsWith(0)}},
      {"Unreadable", {EndsUnreadably(), EndsWith(0)}},
  };
  for (const auto& [name, script] : cases) {
    RemoveTree(NimbaCast());

    const int result = TellInstallation(name, script);

    EXPECT_EQ(Exists(NimbaCast() + L"\\CSUpdateManager"), result == 0) << name;
  }
}

TEST_F(NimbaCastInstallationTest, JudgesTheManagerAndClosesItsProcess) {
  const struct {
    const char* name;
    ShellAnswer answer;
  } cases[] = {
      {"NotLaunched", FailsWith(ERROR_FILE_NOT_FOUND)},
      {"Ends1", EndsWith(1)},
      {"Unreadable", EndsUnreadably()},
      {"NoProcess", HandedOver()},
  };
  for (const auto& [name, answer] : cases) {
    TellInstallation(name, {EndsWith(0), answer});
  }
}

TEST_F(NimbaCastInstallationTest, EndsWithoutWhatItNeeds) {
  {
    const FailingCopy copy(ERROR_DISK_FULL);
    TellInstallation("DiskFull", {});
    EXPECT_EQ(copy.Calls(), 1);
  }
  RemoveTree(NimbaCast());
  RemoveTree(Updater() + L"\\App");
  TellInstallation("NoManager", {EndsWith(0)});

  RemoveTree(NimbaCast());
  EXPECT_TRUE(::DeleteFileW((Updater() + L"\\Updater.exe").c_str()));
  TellInstallation("NoUpdater", {});
}

TEST_F(NimbaCastInstallationTest, RunsTheManagerThatIsThereWhenTheNewOneCannotBeCopied) {
  const std::wstring target = NimbaCast() + L"\\CSUpdateManager\\CSUpdateManager.exe";
  WriteFileBytes(target, "old");
  const FailingCopy copy(ERROR_SHARING_VIOLATION,
                         [&](const std::wstring& file) { return file == target; });

  TellInstallation("", {EndsWith(0), EndsWith(0)});

  EXPECT_EQ(ReadFileBytes(target), "old");
}

TEST_F(NimbaCastInstallationTest, CopiesSubFoldersOverThoseThatAreThere) {
  const std::wstring config = NimbaCast() + L"\\CSUpdateManager\\Config";
  Add(L"\\Updater\\App\\CSUpdateManager\\Config\\both.txt", "new");
  Add(L"\\Updater\\App\\CSUpdateManager\\Config\\new.txt", "new");
  WriteFileBytes(config + L"\\both.txt", "old");
  WriteFileBytes(config + L"\\old.txt", "old");

  EXPECT_EQ(TellInstallation("", {EndsWith(0), EndsWith(0)}), 0);

  EXPECT_THAT(ListTree(config), ElementsAre(L"both.txt", L"new.txt", L"old.txt"));
  EXPECT_EQ(ReadFileBytes(config + L"\\both.txt"), "new");
}

}  // namespace
}  // namespace nhupdate_test
