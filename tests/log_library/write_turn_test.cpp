// Waiting for the mutex, and what other processes do to it.

#include "log_library/write_turn.h"

#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/test_log.h"

namespace nhupdate_test {
namespace {

// Time that passes only while the mutex is waited for and while a record is written, and somebody
// who has the mutex for as long as the test wants.
class TimedTurns {
 public:
  explicit TimedTurns(const TestLog& log)
      : uptime_(log.Module()),
        counter_(log.Module(),
                 [this](LARGE_INTEGER* counter) -> BOOL {
                   counter->QuadPart = now_ms_ * (CountsPerSecond() / 1000);
                   return TRUE;
                 }),
        wait_(log.Module(),
              [this](HANDLE, DWORD limit_ms) -> DWORD {
                limits_ms_.push_back(limit_ms);
                // Windows may give up a moment before the limit.
                const bool is_had = busy_ms_ <= limit_ms;
                Pass(is_had ? busy_ms_ : limit_ms - limit_ms / 100);
                return is_had ? DWORD{WAIT_OBJECT_0} : DWORD{WAIT_TIMEOUT};
              }),
        write_(log.Module(), [this](auto... all) {
          Pass(writing_ms_);
          return write_.Original()(all...);
        }) {}

  void Pass(DWORD milliseconds) {
    now_ms_ += milliseconds;
    uptime_.Forward(milliseconds);
  }

  // How long somebody else still has the mutex from the moment in which it is waited for.
  void KeepBusy(DWORD milliseconds) { busy_ms_ = milliseconds; }
  void LetWritingLast(DWORD milliseconds) { writing_ms_ = milliseconds; }

  // The time limit of the wait in each turn but the first, which is that of the header record.
  [[nodiscard]] std::vector<DWORD> LimitsMs() const {
    return {limits_ms_.begin() + 1, limits_ms_.end()};
  }

 private:
  static LONGLONG CountsPerSecond() {
    LARGE_INTEGER frequency = {};
    ::QueryPerformanceFrequency(&frequency);
    return frequency.QuadPart;
  }

  LONGLONG now_ms_ = 0;
  DWORD busy_ms_ = 0;
  DWORD writing_ms_ = 0;
  std::vector<DWORD> limits_ms_;
  FakeUptime uptime_;
  // std::chrono::steady_clock is made of this.
  INTERPOSER(QueryPerformanceCounter) counter_;
  INTERPOSER(WaitForSingleObject) wait_;
  INTERPOSER(WriteFile) write_;
};

using Limits = std::vector<DWORD>;

constexpr DWORD kForever = INFINITE;

class WriteTurnTest : public testing::Test {
 protected:
  WriteTurnTest() { EXPECT_EQ(log_.Start(), 0); }

  void WriteRecords(int count) {
    for (int record = 0; record < count; ++record) {
      log_.Write(L"record");
    }
  }

  TestLog log_{kSmallFiles};
  TimedTurns turns_{log_};
};

TEST_F(WriteTurnTest, OfSomeoneWhoLetsGoNowAndThenCostsTwoSecondsInAll) {
  turns_.KeepBusy(300);

  WriteRecords(10);

  // A turn that was waited for brings two milliseconds back.
  EXPECT_EQ(turns_.LimitsMs(), Limits({2000, 1702, 1404, 1106, 808, 510, 212, 0, 0, 0}));
  EXPECT_THAT(log_.Texts(), SizeIs(10));
}

TEST_F(WriteTurnTest, BringsBackAMultipleOfTheTimeThatItTookUpToALimit) {
  const struct {
    DWORD writing_ms;
    DWORD regained_ms;
  } cases[] = {
      {0, 2},
      {1, 2 + 16},
      {2, 2 + 16 * 2},
      {50, 2 + 16 * 2},
  };
  for (const auto& test : cases) {
    turns_.KeepBusy(0);
    ASSERT_EQ(log_.Start(), 0);
    turns_.KeepBusy(100);
    turns_.LetWritingLast(test.writing_ms);

    WriteRecords(2);

    EXPECT_EQ(turns_.LimitsMs().back(), 2000 - 100 + test.regained_ms);
  }
}

TEST_F(WriteTurnTest, IsWaitedForByOneRecordOnlyWhenTheMutexIsNeverReleased) {
  turns_.KeepBusy(kForever);

  log_.Write(L"one");
  log_.Write(L"two");
  log_.Write(kFullFile);
  log_.Write(L"three");

  EXPECT_EQ(turns_.LimitsMs(), Limits({2000, 0, 0, 0}));
  EXPECT_THAT(log_.RotatedTexts(1), ElementsAre("one", "two", kFullFileText));
  EXPECT_THAT(log_.Texts(), ElementsAre("three"));
}

TEST_F(WriteTurnTest, IsWaitedForAgainAfterTenSeconds) {
  turns_.KeepBusy(kForever);

  for (const DWORD later_ms : {0u, 9999u, 1u, 9999u, 1u}) {
    turns_.Pass(later_ms);
    log_.Write(L"record");
  }

  EXPECT_EQ(turns_.LimitsMs(), Limits({2000, 0, 2000, 0, 2000}));
}

TEST_F(WriteTurnTest, IsNotWaitedForAgainForBeingHadInBetween) {
  for (const DWORD busy_ms : {kForever, DWORD{0}, kForever}) {
    turns_.KeepBusy(busy_ms);
    log_.Write(L"record");
  }

  EXPECT_EQ(turns_.LimitsMs(), Limits({2000, 0, 0}));
}

}  // namespace
}  // namespace nhupdate_test
