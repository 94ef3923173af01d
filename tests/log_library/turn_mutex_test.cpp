// The mutex that all writers share: how it is made, and what becomes of it.

#include "base/existence.h"
#include "base/unique_handle.h"
#include "tests/log_library/test_log.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

// The mutex and those that tell of a writer's presence. Who may use them:
// tests/log_library/object_access_test.cpp.
TEST(NewTurnMutexTest, HasANameForAllSessionsAsThoseThatTellOfAWriterHave) {
  TestLog log;
  std::vector<std::wstring> names;
  INTERPOSER(CreateMutexExW) create(
      log.Module(), [&](SECURITY_ATTRIBUTES* attributes, const wchar_t* name, auto... rest) {
        names.emplace_back(name);
        return create.Original()(attributes, name, rest...);
      });

  EXPECT_EQ(log.Start(), 0);
  EXPECT_THAT(names,
              ElementsAre(L"Global\\NHUpdateManager.log", L"Global\\NHUpdateManager.log.unshared",
                          L"Global\\NHUpdateManager.log.writer1"));
}

// Without the mutex there is nothing to wait for, and files are rotated all the same.
class MissingTurnMutexTest : public testing::Test {
 protected:
  void StartAndRotate() {
    const INTERPOSER(WaitForSingleObject) wait(log_.Module(), Answers(DWORD{WAIT_OBJECT_0}));

    EXPECT_EQ(log_.Start(), 0);
    log_.Write(kFullFile);
    log_.Write(L"next");

    EXPECT_EQ(wait.Calls(), 0);
    EXPECT_THAT(log_.RotatedTexts(1), ElementsAre(kFullFileText));
    EXPECT_THAT(log_.Texts(), ElementsAre("next"));
  }

  TestLog log_{kSmallFiles};
};

TEST_F(MissingTurnMutexTest, IsDoneWithoutWhenItCantBeMade) {
  const INTERPOSER(CreateMutexExW) create(log_.Module(), Answers(HANDLE{}, ERROR_ACCESS_DENIED));

  StartAndRotate();

  EXPECT_EQ(create.Calls(), 1);
}

TEST_F(MissingTurnMutexTest, IsDoneWithoutWhenNothingCouldTellOthersOfThisWriter) {
  const INTERPOSER(CreateMutexExW) create(log_.Module(),
                                          AnswersCall(2, HANDLE{}, ERROR_ACCESS_DENIED));
  const INTERPOSER(OpenFileMappingW) open(log_.Module(), Answers(HANDLE{}, ERROR_ACCESS_DENIED));
  const INTERPOSER(CreateFileMappingW) make(log_.Module(), Answers(HANDLE{}, ERROR_ACCESS_DENIED));

  StartAndRotate();

  EXPECT_EQ(create.Calls(), 2);
}

// It belongs to the whole machine, so another writer may have it for a moment.
class TurnMutexTest : public testing::Test {
 protected:
  TurnMutexTest() : mutex_(::OpenMutexW(SYNCHRONIZE, FALSE, L"Global\\NHUpdateManager.log")) {
    EXPECT_TRUE(mutex_.IsValid());
  }

  // Takes the mutex in another thread, since its owner would get it again without waiting. The
  // thread ends without releasing it. Returns what waiting for it gave.
  [[nodiscard]] DWORD TakeInAThread() const {
    constexpr DWORD kThreadLimitMs = 60 * 1000;
    const nhupdate::UniqueKernelHandle thread(::CreateThread(
        nullptr, 0, [](void* wanted) -> DWORD { return ::WaitForSingleObject(wanted, 3000); },
        mutex_.Get(), 0, nullptr));
    EXPECT_EQ(::WaitForSingleObject(thread.Get(), kThreadLimitMs), DWORD{WAIT_OBJECT_0});
    DWORD result = WAIT_FAILED;
    EXPECT_TRUE(::GetExitCodeThread(thread.Get(), &result));
    return result;
  }

  StartedLog log_{kSmallFiles};
  const nhupdate::UniqueKernelHandle mutex_;
};

TEST_F(TurnMutexTest, IsTakenOverFromAThreadThatEndedWithIt) {
  log_.Write(kFullFile);
  ASSERT_EQ(TakeInAThread(), DWORD{WAIT_OBJECT_0});
  INTERPOSER(WaitForSingleObject) wait(log_.Module(), [&](auto... all) {
    const DWORD result = wait.Original()(all...);
    EXPECT_EQ(result, DWORD{WAIT_ABANDONED});
    return result;
  });
  INTERPOSER(ReleaseMutex) release(log_.Module(),
                                   [&](HANDLE mutex) { return release.Original()(mutex); });

  log_.Write(L"next");

  EXPECT_EQ(release.Calls(), 1);
  EXPECT_THAT(log_.Texts(), ElementsAre("next"));
  EXPECT_TRUE(nhupdate::Exists(log_.RotatedFile(1)));
}

TEST_F(TurnMutexTest, IsFreeBehindTheRecord) {
  log_.Write(L"record");

  EXPECT_EQ(TakeInAThread(), DWORD{WAIT_OBJECT_0});
}

}  // namespace
}  // namespace nhupdate_test
