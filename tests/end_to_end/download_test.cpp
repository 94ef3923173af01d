#include "base/existence.h"
#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class DownloadEndToEndTest : public EndToEndTest {};

TEST_F(DownloadEndToEndTest, StartsTheDownloadWhenThereIsAnUpdate) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 0});
  hub_.Script(L"download NIMBAHUB", {.exit_code = 0, .delay_ms = 300, .stage = hub_.Release()});

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 12U);
  EXPECT_EQ(Transcript(), StartUp() + HubCheck() + R"(2|Launch updater success for check.
2|Updater exit = 0
2|New update available.
)" + HubDownload() + "2|Return 12\n");
  EXPECT_EQ(
      Children(run),
      R"({base}\Updater\Updater.exe in {base}\Updater show 0 by {pid}: "{base}\Updater\Updater.exe" -NoUI -CheckTask NIMBAHUB -SkipAdditionTasks -ExitWhenParentDie:{pid}
{base}\Updater\Updater.exe in {base}\Updater show 0 by {pid}: "{base}\Updater\Updater.exe" -NoUI NIMBAHUB "-AdditionTask:NIMBA_SOFTWARE com.corvane.windows.nimba_internal.new_updater" -SkipAdditionTasks -DownloadOnly -KillBrothers
)");
  EXPECT_EQ(DescribeTree(hub_.App()), DescribeTree(hub_.Release()));
  EXPECT_TRUE(run.boxes.empty());
}

TEST_F(DownloadEndToEndTest, DoesNotWaitForTheDownload) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 0});
  hub_.Script(L"download NIMBAHUB", {.exit_code = 0, .delay_ms = 1500});

  const ProgramRun run = Run(L"-download");

  const std::vector<ChildStart> children = ReadChildJournal(hub_.ChildJournal());
  ASSERT_EQ(children.size(), 2U);
  EXPECT_THAT(run.ends,
              testing::ElementsAre(children[0].process_id, run.process_id, children[1].process_id));
}

TEST_F(DownloadEndToEndTest, EndsWith11WhenThereIsNothingNew) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
  WriteFileBytes(hub_.App() + L"\\Version.txt", "[ProductVersion]\r\nVersion = 1.0.0\r\n");

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 11U);
  EXPECT_EQ(Transcript(), StartUp() + HubCheck() + R"(2|Launch updater success for check.
2|Updater exit = 1
2|No update available.
2|Version match between installed and app folder : 1.0.0
2|Skip background download due to no update or error.
2|Return 11
)");
  EXPECT_TRUE(nhupdate::Exists(hub_.UpdaterConfig()));
}

TEST_F(DownloadEndToEndTest, DownloadsWhenTheStagedVersionDiffersAfterAnUpdaterError) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = -1});
  hub_.Script(L"download NIMBAHUB", {.exit_code = 1});
  WriteFileBytes(hub_.App() + L"\\Version.txt", "[ProductVersion]\r\nVersion=1.0\r\n");

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 12U);
  EXPECT_EQ(Transcript(), StartUp() + HubCheck() + R"(2|Launch updater success for check.
2|Updater exit = -1
4|Updater error.
2|Version mismatch between installed (1.0.0) and app folder (1.0).
)" + HubDownload() + "2|Return 12\n");
}

TEST_F(DownloadEndToEndTest, EndsWith13WhenTheCheckFails) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 2});
  ::DeleteFileW((hub_.Base() + L"\\Version.txt").c_str());

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 13U);
  EXPECT_EQ(Transcript(), StartUp() + HubCheck() + R"(2|Launch updater success for check.
2|Updater exit = 2
4|Updater error.
2|Version match between installed and app folder : 
2|Skip background download due to no update or error.
2|Return 13
)");
  EXPECT_TRUE(nhupdate::Exists(hub_.UpdaterConfig()));
}

TEST_F(DownloadEndToEndTest, EndsWith14WithoutAnUpdater) {
  ::DeleteFileW((hub_.Updater() + L"\\Updater.exe").c_str());
  hub_.StageRelease();

  const ProgramRun run = Run(L"-download");

  EXPECT_EQ(run.exit_code, 14U);
  EXPECT_EQ(Transcript(),
            StartUp() + HubCheck() + R"(4|Update.exe not found : {base}\Updater\Updater.exe
2|Return 14
)");
  EXPECT_TRUE(run.boxes.empty());
}

TEST_F(DownloadEndToEndTest, NeedsNoElevation) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
  hub_.StageRelease();
  hub_.Script(L"download NIMBAHUB", {.exit_code = 0});

  const ProgramRun run = RunUnelevated(L"-download");

  EXPECT_EQ(run.exit_code, 12U);
  EXPECT_EQ(Transcript(), UnelevatedStartUp() + AnotherVersionDownloaded("2.0.0"));
}

}  // namespace
}  // namespace nhupdate_test
