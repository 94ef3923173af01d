#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/stand_in_process.h"
#include "tests/end_to_end/support/utf8_text.h"

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
  EXPECT_EQ(Transcript(), StartUp("{base}\\Updater\\App\\NHUpdateManager") +
                              "2|Function : Self Update\n" + NoOtherManager() + attempt + attempt +
                              attempt + R"(4|Fail to copy NHUpdateManager finally.
2|Updater config file delete ok : {base}\Updater\Config\ut.ini
2|Return 16
)");
  ExpectErrorBox(run, kCommonError);
  EXPECT_GE(elapsed_ms_, 10'000U);
}

TEST_F(WaitEndToEndTest, FinalUpdateEndsWith2AndABoxAfterTenAttempts) {
  const CHeldFile held(hub_.Base() + L"\\Plugins\\Cameras\\cam.dll");

  const ProgramRun run = RunWithTime(hub_.Manager(), L"-final_update");

  EXPECT_EQ(run.exit_code, 2U);
  std::string attempts;
  for (int attempt = 0; attempt < 10; ++attempt) {
    attempts += R"(2|Copy folder from {base}\Updater\App to {base}
2|Copy file from {base}\Updater\App\NHHub.exe to {base}\NHHub.exe
2|Delete Dir : {base}\Plugins
2|Copy folder from {base}\Updater\App\Plugins to {base}\Plugins
2|Copy folder from {base}\Updater\App\Plugins\Cameras to {base}\Plugins\Cameras
2|Copy file from {base}\Updater\App\Plugins\Cameras\cam.dll to {base}\Plugins\Cameras\cam.dll
4|Fail to copy file = 32
3|Copy fail, sleep 3 seconds and retry.
)";
  }
  EXPECT_EQ(Transcript(), StartUp() + "2|Function : Final Update\n" + NoOtherManager() +
                              "2|Stop associates OK.\n" + Grants() +
                              R"(2|Delete OK : {base}\NHHub.exe
2|Delete OK : {base}\Version.txt
2|Copy OK : {base}\Updater\App\NHHub.exe => {base}\NHHub.exe
2|Copy OK : {base}\Updater\App\Version.txt => {base}\Version.txt
)" + attempts + R"(4|Fail to copy folder.
4|Fail to copy files.
2|Remove empty folder in path : {base}
2|Remove empty folder : {base}\Updater\Temp
2|Updater config file delete ok : {base}\Updater\Config\ut.ini
2|Return 2
)");
  ASSERT_EQ(run.boxes.size(), 1U);
  EXPECT_EQ(hub_.WithPlaceholders(ToWide(run.boxes[0].text)),
            std::string(kCommonError) + "\n{base}\\Plugins\\Cameras\\cam.dll");
  EXPECT_GE(elapsed_ms_, 30'000U);
  EXPECT_EQ(DescribeProductKeys(), "");
}

}  // namespace
}  // namespace nhupdate_test
