// What Wine can't try as a whole: there nobody is asked for consent.

#include <gtest/gtest.h>

#include "examples/host/child_process.h"
#include "examples/host/helper.h"
#include "tests/support/answers.h"
#include "tests/support/interposer.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate_test {
namespace {

using nimba_hub::HostEnd;

constexpr wchar_t kProgram[] = L"C:\\Nimba Hub\\NHUpdateManager\\NHUpdateManager.exe";

nimba_hub::Settings SomeSettings() {
  nimba_hub::Settings settings;
  settings.program = L"C:\\Nimba Hub\\nobody runs this.exe";
  return settings;
}

TEST(HostConsentTest, IsAskedForAndTheProgramStartedHidden) {
  INTERPOSER(ShellExecuteExW) execute([&](SHELLEXECUTEINFOW* execution) {
    EXPECT_STREQ(execution->lpVerb, L"runas");
    EXPECT_STREQ(execution->lpFile, kProgram);
    EXPECT_STREQ(execution->lpParameters, L"-update");
    EXPECT_STREQ(execution->lpDirectory, L"C:\\Nimba Hub\\NHUpdateManager");
    EXPECT_EQ(execution->nShow, SW_HIDE);
    EXPECT_NE(execution->fMask & SEE_MASK_NOCLOSEPROCESS, 0U);
    execution->hProcess = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    return TRUE;
  });

  const nimba_hub::ElevatedStart start = nimba_hub::StartElevated(kProgram, L"-update", nullptr);

  EXPECT_NE(start.process, nullptr);
  EXPECT_EQ(start.error, DWORD{ERROR_SUCCESS});
}

TEST(HostConsentTest, ThatIsRefusedEndsTheHelperInSilence) {
  INTERPOSER(MessageBoxW) box(Answers(IDOK));
  INTERPOSER(ShellExecuteExW) execute(Answers(FALSE, ERROR_CANCELLED));

  const HostEnd end = nimba_hub::RunHelper(SomeSettings());

  EXPECT_EQ(end, HostEnd::kRefused);
  EXPECT_EQ(execute.Calls(), 1);
  EXPECT_EQ(box.Calls(), 0);
}

TEST(HostConsentTest, IsOfNoUseWhenTheUpdaterCannotBeStarted) {
  INTERPOSER(MessageBoxW) box(Answers(IDOK));
  INTERPOSER(ShellExecuteExW) execute(Answers(FALSE, ERROR_FILE_NOT_FOUND));

  const HostEnd end = nimba_hub::RunHelper(SomeSettings());

  EXPECT_EQ(end, HostEnd::kNotStarted);
  EXPECT_EQ(box.Calls(), 1);
}

}  // namespace
}  // namespace nhupdate_test
