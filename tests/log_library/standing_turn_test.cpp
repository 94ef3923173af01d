// The turn that one process keeps for as long as it writes alone. Several objects stand for as many
// processes.

#include "log_library/standing_turn.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "log_library/object_access.h"
#include "tests/log_library/access_text.h"
#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/test_log.h"
#include "tests/log_library/turns.h"

namespace nhupdate_test {
namespace {

using nhupdate::CObjectAccess;
using nhupdate::CStandingTurn;

constexpr wchar_t kMemoryName[] = L"Global\\NHUpdateManager.log.turn";

// The words that all share, in which anyone could write.
class SharedWords {
 public:
  SharedWords()
      : section_(::OpenFileMappingW(FILE_MAP_READ | FILE_MAP_WRITE, FALSE, kMemoryName)),
        view_(::MapViewOfFile(section_.Get(), FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, 0)) {
    EXPECT_TRUE(view_.IsValid());
  }

  [[nodiscard]] std::uint32_t& LastNumber() { return Word(0); }
  [[nodiscard]] std::uint32_t& Busy() { return Word(2); }

 private:
  [[nodiscard]] std::uint32_t& Word(int index) {
    return static_cast<std::uint32_t*>(view_.Get())[index];
  }

  nhupdate::UniqueKernelHandle section_;
  nhupdate::UniqueView view_;
};

class StandingTurnTest : public testing::Test {
 protected:
  StandingTurnTest() {
    EXPECT_TRUE(first_->Open());
    EXPECT_TRUE(second_.Open());
  }

  std::optional<CStandingTurn> first_{std::in_place};
  CStandingTurn second_;
};

TEST_F(StandingTurnTest, IsHadAfterEnoughTurnsInARow) {
  TakeTurns(*first_, kEnoughTurns - 1);
  EXPECT_FALSE(first_->Enter());

  TakeTurns(*first_, 1);

  EXPECT_TRUE(first_->Enter());
  first_->Leave();
  EXPECT_TRUE(first_->Enter());
  EXPECT_FALSE(second_.Enter());
}

TEST_F(StandingTurnTest, IsNotHadWhenAnotherProcessHasATurnInBetween) {
  TakeTurns(*first_, kEnoughTurns - 1);
  TakeTurns(second_, 1);
  TakeTurns(*first_, kEnoughTurns - 1);
  EXPECT_FALSE(first_->Enter());

  TakeTurns(*first_, 1);

  EXPECT_TRUE(first_->Enter());
}

TEST_F(StandingTurnTest, IsTakenBackAtOnceBetweenTwoRecords) {
  TakeTurns(*first_, kEnoughTurns);
  ASSERT_TRUE(first_->Enter());
  first_->Leave();

  EXPECT_TRUE(IsTakenBack(second_));

  EXPECT_FALSE(first_->Enter());
  TakeTurns(second_, kEnoughTurns);
  EXPECT_TRUE(second_.Enter());
}

TEST_F(StandingTurnTest, IsOverWhenTheRecordIsThatIsBeingWritten) {
  TakeTurns(*first_, kEnoughTurns);
  ASSERT_TRUE(first_->Enter());

  EXPECT_FALSE(IsTakenBack(second_));
  EXPECT_FALSE(second_.IsOver());
  first_->Leave();

  EXPECT_TRUE(second_.IsOver());
  EXPECT_FALSE(first_->Enter());
}

TEST_F(StandingTurnTest, IsOverWhenItsProcessHasEndedInIt) {
  TakeTurns(*first_, kEnoughTurns);
  ASSERT_TRUE(first_->Enter());

  first_.reset();

  EXPECT_TRUE(IsTakenBack(second_));
  TakeTurns(second_, kEnoughTurns);
  EXPECT_TRUE(second_.Enter());
}

// Whether its process is still there can't be seen then.
TEST_F(StandingTurnTest, IsNotOverWhenWindowsDoesntTellWhetherItsProcessHasEnded) {
  TakeTurns(*first_, kEnoughTurns);
  ASSERT_TRUE(first_->Enter());
  const INTERPOSER(OpenMutexW) open([](DWORD access, BOOL is_inherited, const wchar_t*) -> HANDLE {
    EXPECT_EQ(access, DWORD{SYNCHRONIZE});
    EXPECT_EQ(is_inherited, FALSE);
    ::SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  });

  EXPECT_FALSE(IsTakenBack(second_));

  EXPECT_EQ(open.Calls(), 1);
}

// Who had the turn before may find that out only after the next one has it.
TEST_F(StandingTurnTest, IsNotHadWhileAnotherProcessIsInTheMiddleOfARecord) {
  SharedWords words;
  TakeTurns(*first_, kEnoughTurns);
  words.Busy() = words.LastNumber();

  EXPECT_FALSE(first_->Enter());

  EXPECT_EQ(words.Busy(), words.LastNumber());
}

TEST_F(StandingTurnTest, IsNotWaitedForWhenItsWordSaysWhatCantBe) {
  SharedWords words;
  const std::uint32_t own = words.LastNumber();
  for (const std::uint32_t nonsense : {own, own + 1, 0xFFFF'FFFFu}) {
    words.Busy() = nonsense;

    EXPECT_TRUE(IsTakenBack(second_)) << nonsense;

    EXPECT_EQ(words.Busy(), 0u);
  }
}

// Only some programs may make memory for all sessions.
TEST_F(StandingTurnTest, IsNobodysWhileAWriterCantShareTheMemory) {
  std::optional<CStandingTurn> other{std::in_place};
  {
    const INTERPOSER(OpenFileMappingW) open(Answers(HANDLE{}, ERROR_FILE_NOT_FOUND));
    const INTERPOSER(CreateFileMappingW) create(Answers(HANDLE{}, ERROR_ACCESS_DENIED));
    EXPECT_TRUE(other->Open());
    EXPECT_EQ(open.Calls(), 2);
  }
  TakeTurns(*other, kEnoughTurns);
  EXPECT_FALSE(other->Enter());
  EXPECT_TRUE(IsTakenBack(*other));

  TakeTurns(*first_, kEnoughTurns);
  EXPECT_FALSE(first_->Enter());
  other.reset();
  TakeTurns(*first_, kEnoughTurns);

  EXPECT_TRUE(first_->Enter());
}

TEST_F(StandingTurnTest, IsNobodysWithinASecondOfAWriterThatCantSeeTheMemory) {
  FakeUptime uptime(::GetModuleHandleW(nullptr));
  TakeTurns(*first_, kEnoughTurns);
  std::optional<CStandingTurn> other{std::in_place};
  {
    const INTERPOSER(MapViewOfFile) map(
        Answers(static_cast<void*>(nullptr), ERROR_NOT_ENOUGH_MEMORY));
    EXPECT_TRUE(other->Open());
  }

  uptime.Forward(999);
  EXPECT_TRUE(first_->Enter());
  first_->Leave();
  uptime.Forward(1);
  EXPECT_FALSE(first_->Enter());
  EXPECT_TRUE(IsTakenBack(*first_));
  TakeTurns(*first_, kEnoughTurns);
  EXPECT_FALSE(first_->Enter());

  other.reset();
  TakeTurns(*first_, kEnoughTurns - 1);
  EXPECT_FALSE(first_->Enter());
  TakeTurns(*first_, 1);
  EXPECT_TRUE(first_->Enter());
}

TEST_F(StandingTurnTest, LooksForSuchAWriterOnceASecondAndNotForEachRecord) {
  FakeUptime uptime(::GetModuleHandleW(nullptr));
  TakeTurns(*first_, kEnoughTurns);
  INTERPOSER(OpenMutexW) look([&](auto... all) { return look.Original()(all...); });

  for (const ULONGLONG later_ms : {0u, 999u, 1u, 0u, 999u, 1u}) {
    uptime.Forward(later_ms);
    EXPECT_TRUE(first_->Enter());
    first_->Leave();
  }

  EXPECT_EQ(look.Calls(), 2);
}

// The first of its mutexes tells of a writer that doesn't share the memory.
TEST_F(StandingTurnTest, AllowsNoTurnsToAWriterThatNobodyKnowsOf) {
  CStandingTurn other;
  const INTERPOSER(CreateMutexExW) create(AnswersCall(1, HANDLE{}, ERROR_ACCESS_DENIED));
  const INTERPOSER(OpenFileMappingW) open(Answers(HANDLE{}, ERROR_ACCESS_DENIED));
  const INTERPOSER(CreateFileMappingW) make(Answers(HANDLE{}, ERROR_ACCESS_DENIED));

  EXPECT_FALSE(other.Open());
}

TEST_F(StandingTurnTest, IsNotForAWriterWhoseEndNobodyCouldSee) {
  CStandingTurn other;
  {
    const INTERPOSER(CreateMutexExW) create(AnswersCall(2, HANDLE{}, ERROR_ACCESS_DENIED));
    EXPECT_TRUE(other.Open());
  }

  TakeTurns(other, kEnoughTurns);
  EXPECT_FALSE(other.Enter());
  TakeTurns(*first_, kEnoughTurns - 1);
  TakeTurns(other, 1);
  TakeTurns(*first_, 1);

  EXPECT_FALSE(first_->Enter());
}

TEST(StandingTurnMemoryTest, IsMadeForEveryoneWhoIsLoggedOnAndOfNoFile) {
  TestLog log;
  INTERPOSER(CreateFileMappingW) create(
      log.Module(), [&](HANDLE file, SECURITY_ATTRIBUTES* attributes, DWORD protection,
                        DWORD size_high, DWORD size, const wchar_t* name) {
        EXPECT_EQ(AccessText(attributes->lpSecurityDescriptor),
                  AccessText(CObjectAccess(nhupdate::kMemoryAccess).Get()->lpSecurityDescriptor));
        EXPECT_EQ(file, INVALID_HANDLE_VALUE);
        EXPECT_EQ(size_high, 0u);
        EXPECT_EQ(size, 16u);
        return create.Original()(file, attributes, protection, size_high, size, name);
      });

  EXPECT_EQ(log.Start(), 0);

  EXPECT_EQ(create.Calls(), 1);
}

// A step in memory without storage would end the process.
TEST(StandingTurnMemoryTest, IsDoneWithoutWhenSomebodyHasSpoiltIt) {
  HANDLE(*const spoilers[])
  () = {
      [] {
        return ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE | SEC_RESERVE, 0,
                                    4096, kMemoryName);
      },
      [] { return ::CreateMutexW(nullptr, FALSE, kMemoryName); },
  };
  for (const auto spoil : spoilers) {
    const nhupdate::UniqueKernelHandle spoilt(spoil());
    ASSERT_TRUE(spoilt.IsValid());
    CStandingTurn turn;

    EXPECT_TRUE(turn.Open());

    TakeTurns(turn, kEnoughTurns);
    EXPECT_FALSE(turn.Enter());
  }
}

// More than that nobody but administrators would be given.
TEST(StandingTurnMemoryTest, IsOpenedForReadingAndWritingAndIsNotInherited) {
  constexpr DWORD kReadAndWrite = FILE_MAP_READ | FILE_MAP_WRITE;
  TestLog log;
  INTERPOSER(OpenFileMappingW) open(log.Module(),
                                    [&](DWORD access, BOOL is_inherited, const wchar_t* name) {
                                      EXPECT_EQ(access, kReadAndWrite);
                                      EXPECT_EQ(is_inherited, FALSE);
                                      return open.Original()(access, is_inherited, name);
                                    });
  const INTERPOSER(CreateFileMappingW) create(log.Module(), Answers(HANDLE{}, ERROR_ACCESS_DENIED));

  // Once before it is tried to make it, and once afterwards.
  EXPECT_EQ(log.Start(), 0);
  EXPECT_EQ(open.Calls(), 2);
  CStandingTurn other;
  EXPECT_TRUE(other.Open());
  EXPECT_EQ(log.Start(), 0);

  EXPECT_EQ(open.Calls(), 3);
}

}  // namespace
}  // namespace nhupdate_test
