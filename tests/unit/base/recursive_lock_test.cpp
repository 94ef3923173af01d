#include "base/recursive_lock.h"

#include <atomic>
#include <mutex>
#include <thread>

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(RecursiveLockTest, IsTakenAgainByItsThreadAndByOthersOnlyAfterwards) {
  CRecursiveLock lock;
  std::atomic<bool> is_taken_by_other = false;
  lock.lock();
  lock.lock();
  std::jthread other([&] {
    const std::lock_guard<CRecursiveLock> guard(lock);
    is_taken_by_other = true;
  });

  for (int times = 0; times < 2; ++times) {
    ::Sleep(20);
    EXPECT_FALSE(is_taken_by_other);
    lock.unlock();
  }
  other.join();

  EXPECT_TRUE(is_taken_by_other);
}

TEST(RecursiveLockTest, GivesWhatItHasMadeBackToWindows) {
  std::vector<CRITICAL_SECTION*> made;
  std::vector<CRITICAL_SECTION*> given_back;
  const INTERPOSER(InitializeCriticalSection) make([&](CRITICAL_SECTION* section) {
    made.push_back(section);
    make.Original()(section);
  });
  const INTERPOSER(DeleteCriticalSection) give_back([&](CRITICAL_SECTION* section) {
    given_back.push_back(section);
    give_back.Original()(section);
  });

  { const CRecursiveLock lock; }

  EXPECT_EQ(made.size(), 1u);
  EXPECT_EQ(given_back, made);
}

}  // namespace
}  // namespace nhupdate_test
