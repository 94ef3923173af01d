#include "update/child_launch.h"

#include "tests/support/placeholders.h"
#include "tests/unit/update/mechanism_test.h"
#include "update/launch_catalog.h"

namespace nhupdate_test {
namespace {

const struct {
  const char* name;
  const ChildLaunch& launch;
} kLaunches[] = {
    {"CheckForUpdate", kCheckForUpdate},     {"BackgroundDownload", kBackgroundDownload},
    {"CheckForUpdater", kCheckForUpdater},   {"UpdateUpdater", kUpdateUpdater},
    {"UpdateProduct", kUpdateProduct},       {"StartSelfUpdate", kStartSelfUpdate},
    {"StartFinalUpdate", kStartFinalUpdate}, {"DownloadNimbaCast", kDownloadNimbaCast},
    {"InstallNimbaCast", kInstallNimbaCast},
};

const struct {
  const char* name;
  ShellAnswer answer;
} kAnswers[] = {
    {"Refused", FailsWith(ERROR_ACCESS_DENIED)},
    {"Ended", EndsWith(7)},
    {"Unreadable", EndsUnreadably()},
    {"NoProcess", HandedOver()},
};

class ChildLaunchTest : public MechanismTest {
 protected:
  [[nodiscard]] std::wstring Folder() const { return Base() + L"\\Place"; }

  LaunchOutcome Launch(const ChildLaunch& launch) {
    return nhupdate::Launch(launch, Folder(), log_.Log());
  }

  // What the shell was told, and whether a process was kept as long as the outcome.
  void TellLaunch(const std::string& heading, const ChildLaunch& launch,
                  const ScriptedShell& shell) {
    {
      const LaunchOutcome outcome = Launch(launch);
      Tell(heading, static_cast<int>(outcome.state));
      TellLine(outcome.exit_code ? L"exit code " + std::to_wstring(*outcome.exit_code)
                                 : L"no exit code");
      TellLine(outcome.process.IsValid() ? L"has a process" : L"has no process");
    }
    for (const RecordedLaunch& told : shell.Launches()) {
      TellLine(WithPlaceholders(
          told.verb + L" | " + told.file + L" | " + told.folder + L" | " + told.parameters, Root(),
          L""));
    }
    TellEvents(shell);
  }
};

TEST_F(ChildLaunchTest, IsLoggedToldToTheShellAndWaitedForAsItsKindSays) {
  for (const auto& [name, launch] : kLaunches) {
    const std::wstring executable = Folder() + launch.executable;
    RemoveTree(Folder());
    TellLaunch(name + std::string(", Missing"), launch, ScriptedShell({}));
    WriteFileBytes(executable, "");
    for (const auto& [answer_name, answer] : kAnswers) {
      TellLaunch(name + std::string(", ") + answer_name, launch, ScriptedShell({answer}));
    }
  }
}

TEST_F(ChildLaunchTest, AsksForTheProcessWithoutAWindowAndLeavesTheRestZero) {
  WriteFileBytes(Folder() + L"\\Updater.exe", "");
  const ScriptedShell shell({EndsWith(0)});

  std::ignore = Launch(kCheckForUpdate);

  const SHELLEXECUTEINFOW& record = shell.Launches().at(0).record;
  EXPECT_EQ(record.cbSize, 112u);
  EXPECT_EQ(record.fMask, 0x40u);
  EXPECT_EQ(record.nShow, 0);
  EXPECT_EQ(record.hwnd, nullptr);
  EXPECT_EQ(record.hInstApp, nullptr);
  EXPECT_EQ(record.lpIDList, nullptr);
  EXPECT_EQ(record.lpClass, nullptr);
  EXPECT_EQ(record.hkeyClass, nullptr);
  EXPECT_EQ(record.dwHotKey, 0u);
  EXPECT_EQ(record.hIcon, nullptr);
  EXPECT_EQ(record.hProcess, nullptr);
}

TEST_F(ChildLaunchTest, LeavesItToTheShellToRefuseAFolder) {
  CreateFolders(Folder() + L"\\Updater.exe");
  const ScriptedShell shell({FailsWith(ERROR_ACCESS_DENIED)});

  EXPECT_EQ(Launch(kCheckForUpdate).state, LaunchState::kNotLaunched);

  EXPECT_EQ(shell.Launches().size(), 1u);
}

TEST_F(ChildLaunchTest, IsASuccessWhenItWasLaunchedAndNoFailureIsKnown) {
  const struct {
    const char* name;
    LaunchState state;
    std::optional<DWORD> exit_code;
    bool is_success;
  } cases[] = {
      {"ended well", LaunchState::kLaunched, 0, true},
      {"not waited for, or not readable", LaunchState::kLaunched, std::nullopt, true},
      {"ended with a failure", LaunchState::kLaunched, 1, false},
      {"refused", LaunchState::kNotLaunched, std::nullopt, false},
      {"missing", LaunchState::kMissing, std::nullopt, false},
  };
  for (const auto& test : cases) {
    const LaunchOutcome outcome = {test.state, test.exit_code, {}};

    EXPECT_EQ(outcome.IsSuccess(), test.is_success) << test.name;
  }
}

TEST_F(ChildLaunchTest, ShowsNumbersSigned) {
  WriteFileBytes(Folder() + L"\\Updater.exe", "");
  for (const DWORD code : {0U, 1U, 2U, 259U, 0xFFFFFFFFU, 0x80000000U}) {
    const ScriptedShell shell({EndsWith(code)});
    EXPECT_EQ(Launch(kCheckForUpdate).exit_code, code);
  }
  for (const DWORD error : {0U, 1223U, 0x80070005U}) {
    const ScriptedShell shell({FailsWith(error)});
    EXPECT_EQ(Launch(kCheckForUpdate).state, LaunchState::kNotLaunched);
  }
  const ScriptedShell shell({EndsWith(1)});
  const INTERPOSER(GetCurrentProcessId) process_id(Answers(DWORD{0x80000005}));
  std::ignore = Launch(kUpdateProduct);

  EXPECT_TRUE(shell.Launches()[0].parameters.ends_with(L"-ExitWhenParentDie:-2147483643"));
  TellLines(log_.Records());
}

}  // namespace
}  // namespace nhupdate_test
