// The host of examples/host, as the product's program, updates itself.

#include <algorithm>
#include <atomic>
#include <optional>

#include "tests/end_to_end/support/host_example.h"
#include "tests/end_to_end/support/texts.h"
#include "tests/support/child_process.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr DWORD kAlreadyRunning = 2;

// The exit code of one more host.
DWORD RunSecondHost(const std::wstring& host) {
  return ExitCodeOf(StartChild(L"\"" + host + L"\""));
}

TEST_F(HostExampleTest, AsksAgainAndAgainWhileThereIsNothingNew) {
  hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
  WriteFileBytes(hub_.App() + L"\\Version.txt", "[ProductVersion]\r\nVersion=1.0.0\r\n");
  const auto close_after_two = [&] {
    if (std::ranges::count(ReadLog(hub_), L"2|Return 11", &HubLogRecord::text) >= 2) {
      close_product_();
    }
  };

  const ProgramRun run = RunHost(close_after_two);

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_THAT(CodesOf(run), testing::AllOf(SizeIs(testing::Ge(2U)), testing::Each(11U)));
  EXPECT_THAT(run.boxes, IsEmpty());
}

TEST_F(HostExampleTest, InstallsTheUpdateThatTheUserAccepts) {
  const ProgramRun run = RunHost(std::ref(close_new_product_));

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer)));
  EXPECT_THAT(ReadFileBytes(Host()), testing::EndsWith("2.0.0"));
  EXPECT_TRUE(close_new_product_.IsDone());
}

TEST_F(HostExampleTest, LeavesTheUserAloneWhoDeclines) {
  constexpr ULONGLONG kThreeChecksMs = 3'000;
  std::atomic<ULONGLONG> declined_at = 0;
  const auto close_later = [&] {
    if (declined_at > 0 && ::GetTickCount64() > declined_at + kThreeChecksMs) {
      close_product_();
    }
  };

  const ProgramRun run = RunHost(close_later, [&](const WatchedBox&) {
    declined_at = ::GetTickCount64();
    return IDCANCEL;
  });

  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_THAT(CodesOf(run), ElementsAre(12));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer)));
}

TEST_F(HostExampleTest, NeedsNoLog) {
  hub_.UseLogLibrary(L"");
  ::DeleteFileW((hub_.Release() + L"\\NHUpdateManager\\NSWLogDynamic64U.dll").c_str());

  const ProgramRun run = RunHost(std::ref(close_new_product_));

  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer)));
  EXPECT_TRUE(close_new_product_.IsDone());
}

TEST_F(HostExampleTest, IsNotStartedTwice) {
  std::optional<DWORD> code;
  const auto start_second = [&] {
    if (!code && ::FindWindowW(kProductWindow, nullptr) != nullptr) {
      code = RunSecondHost(Host());
      close_product_();
    }
  };

  const ProgramRun run = RunHost(start_second, {}, L" --first-check 3600");

  EXPECT_EQ(code, kAlreadyRunning);
  EXPECT_EQ(run.exit_code, 0U);
  EXPECT_THAT(CodesOf(run), IsEmpty());
  EXPECT_THAT(run.boxes, IsEmpty());
}

TEST_F(HostExampleTest, IsNotStartedDuringAnUpdate) {
  hub_.Script(L"NIMBAHUB", {.exit_code = 0, .delay_ms = 2'500, .stage = hub_.Release()});
  std::optional<DWORD> code;
  const auto start_second = [&] {
    if (!code && LogHolds(hub_, "] Launch updater success for update.") &&
        ::FindWindowW(kProductWindow, nullptr) == nullptr) {
      code = RunSecondHost(Host());
    }
    close_new_product_();
  };

  const ProgramRun run = RunHost(start_second);

  EXPECT_EQ(code, kAlreadyRunning);
  EXPECT_THAT(CodesOf(run), ElementsAre(12, 0, 0, 0));
  EXPECT_THAT(TextsOf(run), ElementsAre(HasSubstr(kOffer)));
  EXPECT_TRUE(close_new_product_.IsDone());
}

}  // namespace
}  // namespace nhupdate_test
