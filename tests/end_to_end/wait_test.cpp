#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"

namespace nhupdate_test {
namespace {

constexpr DWORD kTimeLimitMs = 90'000;

class WaitEndToEndTest : public EndToEndTest {
 protected:
  WaitEndToEndTest() { hub_.StageRelease(); }

  ProgramRun RunWithTime(const std::wstring& executable, const std::wstring& arguments) {
    const ULONGLONG start = ::GetTickCount64();
    ProgramRun run =
        RunAs({.executable = executable, .arguments = arguments, .time_limit_ms = kTimeLimitMs});
    elapsed_ms_ = ::GetTickCount64() - start;
    return run;
  }

  ULONGLONG elapsed_ms_ = 0;
};

TEST_F(WaitEndToEndTest, SelfUpdateEndsWith16AndABoxAfterThreeAttempts) {
  const HeldFile held(hub_.Module() + L"\\LogConfig.ini", FILE_SHARE_READ);

  ExpectGoldenRun(16, RunWithTime(hub_.StagedManager(), L"-self_update"));

  EXPECT_GE(elapsed_ms_, 10'000U);
}

TEST_F(WaitEndToEndTest, FinalUpdateEndsWith2AndABoxAfterTenAttempts) {
  const HeldFile held(hub_.Base() + L"\\Plugins\\Cameras\\cam.dll", FILE_SHARE_READ);

  ExpectGoldenRun(2, RunWithTime(hub_.Manager(), L"-final_update"));

  EXPECT_GE(elapsed_ms_, 30'000U);
}

// Windows drops a full stop at the end of a name, so it lists this folder with the one around it
// but doesn't find it by its name. Only the extended-length form of its path leads there.
TEST_F(WaitEndToEndTest, FinalUpdateEndsWith2WhenAStagedFolderCannotBeListed) {
  const std::wstring folder = L"\\\\?\\" + hub_.App() + L"\\d.";
  WriteFileBytes(folder + L"\\x.txt", "not to be lost in silence");

  ExpectGoldenRun(2, RunWithTime(hub_.Manager(), L"-final_update"));

  EXPECT_EQ(ReadFileBytes(folder + L"\\x.txt"), "not to be lost in silence");
  RemoveTree(folder);
}

}  // namespace
}  // namespace nhupdate_test
