// What the shell is told when a child is started: every field, for every child.

#include <gtest/gtest.h>

#include "tests/unit/update/workflow_test.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"

namespace nhupdate_test {
namespace {

struct LaunchRow {
  const char* name;
  const nhupdate::ChildLaunch& launch;
  const wchar_t* executable;
  const wchar_t* parameters;
};

void PrintTo(const LaunchRow& row, std::ostream* stream) {
  *stream << row.name;
}

const LaunchRow kLaunchRows[] = {
    {"CheckForUpdate", nhupdate::kCheckForUpdate, L"\\Updater.exe",
     L"-NoUI -CheckTask NIMBAHUB -SkipAdditionTasks -ExitWhenParentDie:700001"},
    {"BackgroundDownload", nhupdate::kBackgroundDownload, L"\\Updater.exe",
     L"-NoUI NIMBAHUB \"-AdditionTask:NIMBA_SOFTWARE "
     L"com.corvane.windows.nimba_internal.new_updater\" -SkipAdditionTasks -DownloadOnly "
     L"-KillBrothers"},
    {"CheckForUpdater", nhupdate::kCheckForUpdater, L"\\Updater.exe",
     L"-NoUI -CheckTask NIMBA_SOFTWARE com.corvane.windows.nimba_internal.new_updater "
     L"-SkipAdditionTasks -ExitWhenParentDie:700001"},
    {"UpdateUpdater", nhupdate::kUpdateUpdater, L"\\Updater.exe",
     L"NIMBA_SOFTWARE com.corvane.windows.nimba_internal.new_updater -SkipAdditionTasks "
     L"-KillBrothers -ExitWhenParentDie:700001"},
    {"UpdateProduct", nhupdate::kUpdateProduct, L"\\Updater.exe",
     L"NIMBAHUB -SkipAdditionTasks -KillBrothers -ExitWhenParentDie:700001"},
    {"StartSelfUpdate", nhupdate::kStartSelfUpdate, L"\\NHUpdateManager.exe", L"-self_update"},
    {"StartFinalUpdate", nhupdate::kStartFinalUpdate, L"\\NHUpdateManager.exe", L"-final_update"},
    {"DownloadNimbaCast", nhupdate::kDownloadNimbaCast, L"\\Updater.exe",
     L"-NoUI NIMBACS -SkipAdditionTasks -ExitWhenParentDie:700001"},
    {"InstallNimbaCast", nhupdate::kInstallNimbaCast, L"\\CSUpdateManager.exe", L"-Install"},
};

class ChildLaunchRecordTest : public WorkflowTest, public testing::WithParamInterface<LaunchRow> {};

TEST_P(ChildLaunchRecordTest, TellsTheShellFileParametersAndFolder) {
  AddFile(L"\\Place" + std::wstring(GetParam().executable));
  const std::wstring folder = product_.Base() + L"\\Place";
  ScriptedShell shell({EndsWith(0)});

  std::ignore = nhupdate::Launch(GetParam().launch, folder, Manager().Records());

  ASSERT_EQ(shell.Launches().size(), 1u);
  const RecordedLaunch& launched = shell.Launches()[0];
  EXPECT_EQ(launched.verb, L"open");
  EXPECT_EQ(launched.file, folder + GetParam().executable);
  EXPECT_EQ(launched.parameters, GetParam().parameters);
  EXPECT_EQ(launched.folder, folder);
}

TEST_P(ChildLaunchRecordTest, AsksForTheProcessWithoutAWindowAndLeavesTheRestZero) {
  AddFile(L"\\Place" + std::wstring(GetParam().executable));
  ScriptedShell shell({EndsWith(0)});

  std::ignore =
      nhupdate::Launch(GetParam().launch, product_.Base() + L"\\Place", Manager().Records());

  ASSERT_EQ(shell.Launches().size(), 1u);
  const SHELLEXECUTEINFOW& record = shell.Launches()[0].record;
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

TEST_P(ChildLaunchRecordTest, AnnouncesWhatItTellsTheShell) {
  AddFile(L"\\Place" + std::wstring(GetParam().executable));
  ScriptedShell shell({FailsWith(ERROR_FILE_NOT_FOUND)});

  std::ignore =
      nhupdate::Launch(GetParam().launch, product_.Base() + L"\\Place", Manager().Records());

  std::wstring parameters = GetParam().parameters;
  const std::size_t id = parameters.find(L"700001");
  if (id != std::wstring::npos) {
    parameters.replace(id, 6, L"{pid}");
  }
  Lines announced = product_.Transcript();
  ASSERT_EQ(announced.size(), 4u);
  announced.pop_back();
  EXPECT_EQ(announced, LaunchLines(L"{base}\\Place", GetParam().executable, parameters));
}

INSTANTIATE_TEST_SUITE_P(AllLaunches, ChildLaunchRecordTest, testing::ValuesIn(kLaunchRows),
                         [](const auto& row) { return std::string(row.param.name); });

class ChildLaunchParametersTest : public WorkflowTest {};

TEST_F(ChildLaunchParametersTest, ShowAHugeProcessIdSigned) {
  AddUpdater();
  ScriptedShell shell({EndsWith(1)});
  INTERPOSER(GetCurrentProcessId) process_id([] { return DWORD{0x80000005}; });

  std::ignore = nhupdate::Launch(nhupdate::kUpdateProduct, product_.Base() + L"\\Updater",
                                 Manager().Records());

  ASSERT_EQ(shell.Launches().size(), 1u);
  EXPECT_EQ(shell.Launches()[0].parameters,
            L"NIMBAHUB -SkipAdditionTasks -KillBrothers -ExitWhenParentDie:-2147483643");
}

}  // namespace
}  // namespace nhupdate_test
