// What docs/calling.md says of runs that meet.

#include "base/unique_handle.h"
#include "tests/end_to_end/support/end_to_end_test.h"

namespace nhupdate_test {
namespace {

class CallerTest : public EndToEndTest {};

TEST_F(CallerTest, OfADownloadThatAnUpdateHasEndedIsTold0) {
  constexpr int kCheckMs = 8'000;
  constexpr DWORD kLimitMs = 25'000;
  hub_.Script(L"check NIMBAHUB", {.exit_code = 1, .delay_ms = kCheckMs});
  hub_.StageRelease();
  bool is_update_started = false;
  const auto start_update = [&] {
    if (is_update_started || !LogHolds(hub_, "] Launch updater success for check.")) {
      return;
    }
    is_update_started = true;
    std::wstring command_line = L"\"" + hub_.Manager() + L"\" -final_update";
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION information = {};
    ASSERT_TRUE(::CreateProcessW(hub_.Manager().c_str(), command_line.data(), nullptr, nullptr,
                                 FALSE, 0, nullptr, nullptr, &startup, &information));
    ::CloseHandle(information.hThread);
    const nhupdate::UniqueKernelHandle update(information.hProcess);
    EXPECT_EQ(::WaitForSingleObject(update.Get(), kLimitMs), WAIT_OBJECT_0);
  };

  const ProgramRun run = RunToTheEnd({.executable = hub_.Manager(),
                                      .arguments = L"-download",
                                      .time_limit_ms = 2 * kLimitMs,
                                      .while_running = start_update});

  EXPECT_TRUE(is_update_started);
  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_TRUE(LogHolds(hub_, "found, terminate it."));
  EXPECT_FALSE(LogHolds(hub_, "] Return 11"));
}

}  // namespace
}  // namespace nhupdate_test
