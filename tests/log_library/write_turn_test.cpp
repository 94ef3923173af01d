// Waiting for the mutex, and what other processes do to it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

using testing::ElementsAre;

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

  EXPECT_THAT(waits, ElementsAre(1000u, 0u, 0u, 0u));
  EXPECT_THAT(ReadTexts(log.place.CurrentFile()),
              ElementsAre("one", "two", kFullFileText, "three", "four"));
  EXPECT_FALSE(nhupdate::Exists(log.place.RotatedFile(1)));
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

  EXPECT_THAT(waits, ElementsAre(1000u, 0u, 1000u, 0u, 1000u));
}

TEST(WriteTurnTest, IsWaitedForAgainAtOnceAfterATurn) {
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
  log.library.Write(L"waits again");

  EXPECT_THAT(waits, ElementsAre(1000u, 0u, 1000u));
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
