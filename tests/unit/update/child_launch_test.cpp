// What is logged of a launch, and what its caller learns.

#include <gtest/gtest.h>

#include "tests/unit/update/workflow_test.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"

namespace nhupdate_test {
namespace {

using nhupdate::LaunchOutcome;
using nhupdate::LaunchState;

struct MessageRow {
  const char* name;
  const nhupdate::ChildLaunch& launch;
  const wchar_t* executable;
  const wchar_t* not_found;
  const wchar_t* failure;  // of error 5
  const wchar_t* success;
  const wchar_t* exit;  // of code 7; null for a child that isn't waited for
};

void PrintTo(const MessageRow& row, std::ostream* stream) {
  *stream << row.name;
}

const MessageRow kMessageRows[] = {
    {"CheckForUpdate", nhupdate::kCheckForUpdate, L"\\Updater.exe",
     L"4|Update.exe not found : {base}\\Place\\Updater.exe",
     L"4|Fail to launch updater for download : 5", L"2|Launch updater success for check.",
     L"2|Updater exit = 7"},
    {"BackgroundDownload", nhupdate::kBackgroundDownload, L"\\Updater.exe",
     L"4|Update.exe not found : {base}\\Place\\Updater.exe",
     L"4|Fail to launch updater for download : 5",
     L"2|Launch updater success for baclground download.", nullptr},
    {"CheckForUpdater", nhupdate::kCheckForUpdater, L"\\Updater.exe",
     L"4|Update.exe not found : {base}\\Place\\Updater.exe",
     L"4|Fail to launch updater for check : 5", L"2|Launch updater success for check.",
     L"2|Updater exit = 7"},
    {"UpdateUpdater", nhupdate::kUpdateUpdater, L"\\Updater.exe",
     L"4|Update.exe not found : {base}\\Place\\Updater.exe",
     L"4|Fail to launch updater for update : 5", L"2|Launch updater success for update.",
     L"2|Updater exit = 7"},
    {"UpdateProduct", nhupdate::kUpdateProduct, L"\\Updater.exe",
     L"4|Update.exe not found : {base}\\Place\\Updater.exe",
     L"4|Fail to launch updater for update : 5", L"2|Launch updater success for update.",
     L"2|Updater exit = 7"},
    {"StartSelfUpdate", nhupdate::kStartSelfUpdate, L"\\NHUpdateManager.exe",
     L"4|NHUpdateManager.exe not found : {base}\\Place\\NHUpdateManager.exe",
     L"4|Fail to launch NHUpdateManager for self update : 5",
     L"2|Launch NHUpdateManager success for self update.", nullptr},
    {"StartFinalUpdate", nhupdate::kStartFinalUpdate, L"\\NHUpdateManager.exe",
     L"4|NHUpdateManager.exe not found for final update : "
     L"{base}\\Place\\NHUpdateManager.exe",
     L"4|Fail to launch NHUpdateManager for final update : 5",
     L"2|Launch NHUpdateManager success for final update.", nullptr},
    {"DownloadNimbaCast", nhupdate::kDownloadNimbaCast, L"\\Updater.exe",
     L"4|Update.exe not found : {base}\\Place\\Updater.exe",
     L"4|Fail to launch updater for download : 5", L"2|Launch updater success for download.",
     L"2|Updater exit = 7"},
    {"InstallNimbaCast", nhupdate::kInstallNimbaCast, L"\\CSUpdateManager.exe",
     L"4|CSUpdateManager.exe not found : {base}\\Place\\CSUpdateManager.exe",
     L"4|Fail to launch CSUpdateManager for install : 5",
     L"2|Launch CSUpdateManager success for install.", L"2|CSUpdateManager exit = 7"},
};

class ChildLaunchTest : public WorkflowTest, public testing::WithParamInterface<MessageRow> {
 protected:
  LaunchOutcome Launch() {
    return nhupdate::Launch(GetParam().launch, product_.Base() + L"\\Place", Manager().Records());
  }

  void AddExecutable() { AddFile(L"\\Place" + std::wstring(GetParam().executable)); }

  // The records behind the three that announce the launch.
  Lines Outcome() {
    const Lines all = product_.Transcript();
    return all.size() < 3 ? Lines() : Lines(all.begin() + 3, all.end());
  }
};

TEST_P(ChildLaunchTest, DoesNotLaunchWhatIsMissing) {
  ScriptedShell shell({});

  const LaunchOutcome outcome = Launch();

  EXPECT_EQ(outcome.state, LaunchState::kMissing);
  EXPECT_EQ(Outcome(), Lines({GetParam().not_found}));
}

TEST_P(ChildLaunchTest, LogsTheErrorOfTheShell) {
  AddExecutable();
  ScriptedShell shell({FailsWith(ERROR_ACCESS_DENIED)});

  const LaunchOutcome outcome = Launch();

  EXPECT_EQ(outcome.state, LaunchState::kNotLaunched);
  EXPECT_EQ(Outcome(), Lines({GetParam().failure}));
}

TEST_P(ChildLaunchTest, TellsTheExitCodeOfAChildThatIsWaitedFor) {
  AddExecutable();
  ScriptedShell shell({EndsWith(7)});

  const LaunchOutcome outcome = Launch();

  EXPECT_EQ(outcome.state, LaunchState::kLaunched);
  if (GetParam().exit == nullptr) {
    EXPECT_FALSE(outcome.exit_code.has_value());
    EXPECT_EQ(Outcome(), Lines({GetParam().success}));
  } else {
    EXPECT_EQ(outcome.exit_code, DWORD{7});
    EXPECT_EQ(Outcome(), Lines({GetParam().success, GetParam().exit}));
  }
}

TEST_P(ChildLaunchTest, SaysNothingOfAnExitCodeThatCannotBeRead) {
  AddExecutable();
  ScriptedShell shell({EndsUnreadably()});

  const LaunchOutcome outcome = Launch();

  EXPECT_EQ(outcome.state, LaunchState::kLaunched);
  EXPECT_FALSE(outcome.exit_code.has_value());
  EXPECT_EQ(Outcome(), Lines({GetParam().success}));
}

TEST_P(ChildLaunchTest, TakesAChildWithoutAProcessForStarted) {
  AddExecutable();
  ScriptedShell shell({HandedOver()});

  const LaunchOutcome outcome = Launch();

  EXPECT_EQ(outcome.state, LaunchState::kLaunched);
  EXPECT_FALSE(outcome.exit_code.has_value());
  EXPECT_EQ(Outcome(), Lines({GetParam().success}));
}

TEST_P(ChildLaunchTest, LeavesItToTheShellToRefuseAFolder) {
  CreateFolders(product_.Base() + L"\\Place" + GetParam().executable);
  ScriptedShell shell({FailsWith(ERROR_ACCESS_DENIED)});

  const LaunchOutcome outcome = Launch();

  EXPECT_EQ(outcome.state, LaunchState::kNotLaunched);
  EXPECT_EQ(shell.Launches().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(AllLaunches, ChildLaunchTest, testing::ValuesIn(kMessageRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace nhupdate_test
