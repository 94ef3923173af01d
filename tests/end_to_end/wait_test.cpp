#include "base/existence.h"
#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/stand_in_process.h"

namespace nhupdate_test {
namespace {

constexpr DWORD kTimeLimitMs = 90'000;

class WaitEndToEndTest : public EndToEndTest {
 protected:
  WaitEndToEndTest() { hub_.StageRelease(); }

  ProgramRun RunWithTime(const std::wstring& executable, const std::wstring& arguments) {
    const ULONGLONG start = ::GetTickCount64();
    ProgramRun run = RunToTheEnd(
        {.executable = executable, .arguments = arguments, .time_limit_ms = kTimeLimitMs});
    elapsed_ms_ = ::GetTickCount64() - start;
    return run;
  }

  ULONGLONG elapsed_ms_ = 0;
};

TEST_F(WaitEndToEndTest, SelfUpdateEndsWith16AndABoxAfterThreeAttempts) {
  const CHeldFile held(hub_.Module() + L"\\LogConfig.ini");

  const ProgramRun run = RunWithTime(hub_.StagedManager(), L"-self_update");

  EXPECT_EQ(run.exit_code, 16U);
  const std::string attempt =
      R"(2|Copy folder from {base}\Updater\App\NHUpdateManager to {base}\NHUpdateManager
2|Delete Dir : {base}\NHUpdateManager\Config
2|Copy folder from {base}\Updater\App\NHUpdateManager\Config to {base}\NHUpdateManager\Config
2|Copy file from {base}\Updater\App\NHUpdateManager\Config\NHUpdateManager.Default.json to {base}\NHUpdateManager\Config\NHUpdateManager.Default.json
2|Copy file from {base}\Updater\App\NHUpdateManager\LogConfig.ini to {base}\NHUpdateManager\LogConfig.ini
4|Fail to copy file = 32
3|Fail to copy NHUpdateManager, sleep and try again.
)";
  EXPECT_EQ(Transcript(), StartUp(kStagedModule) + "2|Function : Self Update\n" + NoOtherManager() +
                              attempt + attempt + attempt +
                              "4|Fail to copy NHUpdateManager finally.\n" + kConfigDeleted +
                              "2|Return 16\n");
  ExpectErrorBox(run, kCommonError);
  EXPECT_GE(elapsed_ms_, 10'000U);
}

TEST_F(WaitEndToEndTest, FinalUpdateEndsWith2AndABoxAfterTenAttempts) {
  const CHeldFile held(hub_.Base() + L"\\Plugins\\Cameras\\cam.dll");

  const ProgramRun run = RunWithTime(hub_.Manager(), L"-final_update");

  EXPECT_EQ(run.exit_code, 2U);
  std::string attempts;
  for (int attempt = 0; attempt < 10; ++attempt) {
    attempts += CopyFailedAtTheCameras();
  }
  EXPECT_EQ(Transcript(), StartUp() + "2|Function : Final Update\n" + NoOtherManager() +
                              "2|Stop associates OK.\n" + Grants() + TopLevelFilesReplaced() +
                              attempts + "4|Fail to copy folder.\n4|Fail to copy files.\n" +
                              TemporaryFolderRemoved() + kConfigDeleted + "2|Return 2\n");
  ExpectErrorBox(run, std::string(kCommonError) + "\n{base}\\Plugins\\Cameras\\cam.dll");
  EXPECT_FALSE(nhupdate::Exists(hub_.Updater() + L"\\Temp"));
  EXPECT_GE(elapsed_ms_, 30'000U);
  EXPECT_EQ(DescribeProductKeys(), "");
}

}  // namespace
}  // namespace nhupdate_test
