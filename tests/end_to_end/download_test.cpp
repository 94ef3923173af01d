#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

class DownloadEndToEndTest : public EndToEndTest {};

TEST_F(DownloadEndToEndTest, StartsTheDownloadWhenThereIsAnUpdate) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 0});
  hub_.Script(L"download NIMBAHUB", {.exit_code = 0, .delay_ms = 300, .stage = hub_.Release()});

  ExpectGoldenRun(12, Run(L"-download"));
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

  ExpectGoldenRun(11, Run(L"-download"));
}

TEST_F(DownloadEndToEndTest, DownloadsWhenTheStagedVersionDiffersAfterAnUpdaterError) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = -1});
  hub_.Script(L"download NIMBAHUB", {.exit_code = 1});
  WriteFileBytes(hub_.App() + L"\\Version.txt", "[ProductVersion]\r\nVersion=1.0\r\n");

  ExpectGoldenRun(12, Run(L"-download"));
}

TEST_F(DownloadEndToEndTest, EndsWith13WhenTheCheckFails) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 2});
  ::DeleteFileW((hub_.Base() + L"\\Version.txt").c_str());

  ExpectGoldenRun(13, Run(L"-download"));
}

TEST_F(DownloadEndToEndTest, EndsWith14WithoutAnUpdater) {
  ::DeleteFileW((hub_.Updater() + L"\\Updater.exe").c_str());
  hub_.StageRelease();

  ExpectGoldenRun(14, Run(L"-download"));
}

TEST_F(DownloadEndToEndTest, NeedsNoElevation) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
  hub_.StageRelease();
  hub_.Script(L"download NIMBAHUB", {.exit_code = 0});

  ExpectGoldenRun(12, RunUnelevated(L"-download"));
}

}  // namespace
}  // namespace nhupdate_test
