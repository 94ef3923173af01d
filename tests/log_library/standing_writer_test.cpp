// The library while it keeps a standing turn, and beside a writer that does.

#include "tests/log_library/test_log.h"
#include "tests/log_library/turns.h"
#include "tests/log_library/writer_process.h"

namespace nhupdate_test {
namespace {

void WriteRecords(TestLog& log, int count) {
  for (int number = 0; number < count; ++number) {
    log.Write(L"record");
  }
}

TEST(StandingWriterTest, WaitsForTheMutexNoMoreAfterEnoughRecords) {
  StartedLog log;
  const INTERPOSER(WaitForSingleObject) wait(log.Module());

  // The header record is the first.
  WriteRecords(log, kEnoughTurns - 1);
  EXPECT_EQ(wait.Calls(), kEnoughTurns - 1);
  WriteRecords(log, 100);

  EXPECT_EQ(wait.Calls(), kEnoughTurns - 1);
  EXPECT_THAT(log.Texts(), SizeIs(kEnoughTurns + 99));
}

// Whoever gets the mutex next takes the turn back, and it must not begin afterwards.
TEST(StandingWriterTest, HasItsTurnBeforeItLetsTheMutexGo) {
  CStandingTurn next;
  ASSERT_TRUE(next.Open());
  StartedLog log;
  INTERPOSER(ReleaseMutex) release(log.Module(), [&](HANDLE mutex) {
    const BOOL is_released = release.Original()(mutex);
    next.TakeBack();
    return is_released;
  });
  const INTERPOSER(WaitForSingleObject) wait(log.Module());

  WriteRecords(log, 2 * kEnoughTurns);

  EXPECT_EQ(wait.Calls(), 2 * kEnoughTurns);
}

TEST(StandingWriterTest, RotatesItsFiles) {
  StartedLog log(kSmallFiles);
  WriteRecords(log, kEnoughTurns);

  log.Write(kFullFile);
  log.Write(L"next");

  EXPECT_THAT(log.Texts(), ElementsAre("next"));
}

TEST(StandingWriterTest, LetsAnotherProcessWriteAndThenWaitsForTheMutexAgain) {
  StartedLog log;
  WriteRecords(log, kEnoughTurns);
  const WriterGate gate;
  WriterProcess another(log, gate, L"another", 3);

  gate.Open();
  EXPECT_EQ(another.Wait(), 0);
  const INTERPOSER(WaitForSingleObject) wait(log.Module());
  log.Write(L"after");

  EXPECT_EQ(wait.Calls(), 1);
  EXPECT_THAT(log.Texts(), SizeIs(kEnoughTurns + 3 + 1));
}

// Somebody who is in the middle of a record of his standing turn, and time that passes only while
// he is waited for.
class BusyWriterTest : public testing::Test {
 protected:
  BusyWriterTest() {
    EXPECT_TRUE(other_.Open());
    EXPECT_EQ(log_.Start(), 0);
    for (int turn = 0; turn < kEnoughTurns; ++turn) {
      other_.CountTurn();
    }
    EXPECT_TRUE(other_.Enter());
  }

  static constexpr int kReleasesOfTheHeader = 1;

  CStandingTurn other_;
  TestLog log_;
  LONGLONG now_ms_ = 0;
  std::vector<DWORD> sleeps_ms_;
  std::function<void()> in_sleep_ = [] {};
  INTERPOSER(QueryPerformanceFrequency)
  frequency_{log_.Module(), [](LARGE_INTEGER* value) -> BOOL {
               value->QuadPart = 1000;
               return TRUE;
             }};
  INTERPOSER(QueryPerformanceCounter)
  counter_{log_.Module(), [this](LARGE_INTEGER* value) -> BOOL {
             value->QuadPart = now_ms_;
             return TRUE;
           }};
  INTERPOSER(Sleep) sleep_{log_.Module(), [this](DWORD milliseconds) {
                             sleeps_ms_.push_back(milliseconds);
                             now_ms_ += milliseconds;
                             in_sleep_();
                           }};
  INTERPOSER(ReleaseMutex) release_{log_.Module()};
};

TEST_F(BusyWriterTest, IsWaitedForUntilHisRecordIsWritten) {
  in_sleep_ = [this] {
    EXPECT_THAT(log_.Texts(), SizeIs(0));
    if (sleeps_ms_.size() == 102) {
      other_.Leave();
    }
  };

  log_.Write(L"record");

  std::vector<DWORD> expected(100, 0);
  expected.insert(expected.end(), 2, 1);
  EXPECT_EQ(sleeps_ms_, expected);
  EXPECT_EQ(release_.Calls(), kReleasesOfTheHeader + 1);
  EXPECT_THAT(log_.Texts(), ElementsAre("record"));
}

TEST_F(BusyWriterTest, IsWaitedForNoLongerThanTheMutex) {
  log_.Write(L"one");
  EXPECT_EQ(now_ms_, 2000);
  log_.Write(L"two");

  EXPECT_EQ(now_ms_, 2000);
  EXPECT_EQ(release_.Calls(), kReleasesOfTheHeader + 2);
  EXPECT_THAT(log_.Texts(), ElementsAre("one", "two"));
}

}  // namespace
}  // namespace nhupdate_test
