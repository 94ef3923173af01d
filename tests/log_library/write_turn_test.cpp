// Waiting for the mutex, and what other processes do to it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "base/existence.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::Le;
using testing::SizeIs;

// The mutex belongs to the whole machine, so another writer may have it for a moment.
constexpr DWORD kPatienceMs = 3000;
constexpr DWORD kThreadLimitMs = 60 * 1000;
constexpr wchar_t kMutexName[] = L"Global\\NHUpdateManager.log";

// Takes the mutex in a thread of its own, since a thread that has it gets it any number of times,
// and ends without releasing it. Returns what waiting for it gave.
DWORD TakeInAThread(const nhupdate::UniqueKernelHandle& mutex) {
  const nhupdate::UniqueKernelHandle thread(::CreateThread(
      nullptr, 0, [](void* wanted) -> DWORD { return ::WaitForSingleObject(wanted, kPatienceMs); },
      mutex.Get(), 0, nullptr));
  EXPECT_EQ(::WaitForSingleObject(thread.Get(), kThreadLimitMs), static_cast<DWORD>(WAIT_OBJECT_0));
  DWORD result = WAIT_FAILED;
  EXPECT_TRUE(::GetExitCodeThread(thread.Get(), &result));
  return result;
}

// Holds the mutex for a while, again and again, as long as the object lives.
class Squatter {
 public:
  explicit Squatter(std::chrono::milliseconds hold)
      : thread_([this, hold] {
          const nhupdate::UniqueKernelHandle mutex(::CreateMutexW(nullptr, FALSE, kMutexName));
          while (!is_over_) {
            ::WaitForSingleObject(mutex.Get(), INFINITE);
            has_it_ = true;
            std::this_thread::sleep_for(hold);
            has_it_ = false;
            ::ReleaseMutex(mutex.Get());
          }
        }) {}
  ~Squatter() {
    is_over_ = true;
    thread_.join();
  }
  Squatter(const Squatter&) = delete;
  Squatter& operator=(const Squatter&) = delete;

  void WaitUntilItHasTheMutex() const {
    while (!has_it_) {
      ::Sleep(1);
    }
  }

 private:
  std::atomic<bool> has_it_ = false;
  std::atomic<bool> is_over_ = false;
  std::thread thread_;  // behind what it uses
};

TEST(WriteTurnTest, OfSomeoneWhoLetsGoNowAndThenCostsTwoSecondsInAll) {
  StartedLog log;
  const Squatter squatter(std::chrono::milliseconds(300));

  ULONGLONG needed_ms = 0;
  for (int record = 0; record < 30; ++record) {
    squatter.WaitUntilItHasTheMutex();
    const ULONGLONG begin = ::GetTickCount64();
    log.library.Write(L"record");
    needed_ms += ::GetTickCount64() - begin;
  }

  EXPECT_GE(needed_ms, 1500u);
  EXPECT_LE(needed_ms, 4000u);  // it would be nine seconds
  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), SizeIs(30));
}

TEST(WriteTurnTest, IsWaitedForByOneRecordOnlyWhenTheMutexIsNeverReleased) {
  StartedLog log(kSmallFiles);
  const FakeUptime uptime(log.library);
  std::vector<DWORD> waits;
  {
    Interposer<decltype(::WaitForSingleObject)> wait(log.library.Module(), "WaitForSingleObject",
                                                     [&](HANDLE, DWORD milliseconds) -> DWORD {
                                                       waits.push_back(milliseconds);
                                                       return WAIT_TIMEOUT;
                                                     });
    log.library.Write(L"one");
    log.library.Write(L"two");
    log.library.Write(kFullFile);
    log.library.Write(L"three");
  }
  log.library.Write(L"four");

  EXPECT_THAT(waits, ElementsAre(Le(2000u), 0u, 0u, 0u));
  EXPECT_THAT(ReadTexts(log.place.RotatedFile(1)), ElementsAre("one", "two", kFullFileText));
  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("three", "four"));
}

TEST(WriteTurnTest, IsWaitedForAgainAfterTenSeconds) {
  StartedLog log;
  FakeUptime uptime(log.library);
  std::vector<DWORD> waits;
  Interposer<decltype(::WaitForSingleObject)> wait(log.library.Module(), "WaitForSingleObject",
                                                   [&](HANDLE, DWORD milliseconds) -> DWORD {
                                                     waits.push_back(milliseconds);
                                                     return WAIT_TIMEOUT;
                                                   });

  for (const ULONGLONG later_ms : {0u, 9999u, 1u, 9999u, 1u}) {
    uptime.Forward(later_ms);
    log.library.Write(L"record");
  }

  // The first wait is for what starting the log has left of two seconds.
  EXPECT_THAT(waits, ElementsAre(AllOf(Ge(1u), Le(2000u)), 0u, 2000u, 0u, 2000u));
}

TEST(WriteTurnTest, IsNotWaitedForAgainForBeingHadInBetween) {
  StartedLog log;
  const FakeUptime uptime(log.library);
  std::vector<DWORD> waits;
  bool is_free = false;
  Interposer<decltype(::WaitForSingleObject)> wait(
      log.library.Module(), "WaitForSingleObject", [&](HANDLE mutex, DWORD milliseconds) -> DWORD {
        waits.push_back(milliseconds);
        return is_free ? wait.Original()(mutex, milliseconds) : WAIT_TIMEOUT;
      });

  log.library.Write(L"in vain");
  is_free = true;
  log.library.Write(L"free, without waiting");
  is_free = false;
  log.library.Write(L"doesn't wait");

  EXPECT_THAT(waits, ElementsAre(Ge(1u), 0u, 0u));
}

TEST(WriteTurnTest, OfAThreadThatEndedInItIsTakenOver) {
  StartedLog log(kSmallFiles);
  log.library.Write(kFullFile);
  const nhupdate::UniqueKernelHandle mutex(::OpenMutexW(SYNCHRONIZE, FALSE, kMutexName));
  ASSERT_TRUE(mutex.IsValid());
  ASSERT_EQ(TakeInAThread(mutex), static_cast<DWORD>(WAIT_OBJECT_0));

  log.library.Write(L"next");

  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("next"));
  EXPECT_TRUE(nhupdate::Exists(log.place.RotatedFile(1)));
}

TEST(WriteTurnTest, EndsWithTheRecord) {
  StartedLog log;

  log.library.Write(L"record");

  const nhupdate::UniqueKernelHandle mutex(::OpenMutexW(SYNCHRONIZE, FALSE, kMutexName));
  ASSERT_TRUE(mutex.IsValid());
  EXPECT_EQ(TakeInAThread(mutex), static_cast<DWORD>(WAIT_OBJECT_0));
}

}  // namespace
}  // namespace nhupdate_test
