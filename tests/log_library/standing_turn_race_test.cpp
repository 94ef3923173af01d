// Two processes at the same moment: one begins a record of its standing turn, one processor
// instruction after the other, and behind each of them once the turn is taken back.

#include <functional>
#include <utility>

#include <gtest/gtest.h>

#include "base/windows.h"
#include "log_library/standing_turn.h"
#include "tests/log_library/turns.h"

namespace nhupdate_test {
namespace {

using nhupdate::CStandingTurn;

// Runs a piece of code in single steps and, after so many of them, another piece.
class SingleSteps {
 public:
  SingleSteps() : handler_(::AddVectoredExceptionHandler(1, &OnException)) {}
  ~SingleSteps() { ::RemoveVectoredExceptionHandler(handler_); }
  SingleSteps(const SingleSteps&) = delete;
  SingleSteps& operator=(const SingleSteps&) = delete;

  // False when the code has fewer steps; the other piece has not run then.
  bool Run(const std::function<void()>& code, int step, std::function<void()> in_between) {
    steps_left_ = step;
    in_between_ = std::move(in_between);
    ::RaiseException(kBegin, 0, 0, nullptr);
    code();
    const bool has_run = steps_left_ <= 0;
    steps_left_ = 0;
    return has_run;
  }

 private:
  static constexpr DWORD kBegin = 0xE0000001;
  static constexpr DWORD kTrapFlag = 0x100;

  static LONG CALLBACK OnException(EXCEPTION_POINTERS* exception) {
    const DWORD code = exception->ExceptionRecord->ExceptionCode;
    if (code != kBegin && code != EXCEPTION_SINGLE_STEP) {
      return EXCEPTION_CONTINUE_SEARCH;
    }
    if (code == EXCEPTION_SINGLE_STEP && --steps_left_ == 0) {
      in_between_();
    }
    if (steps_left_ > 0) {
      exception->ContextRecord->EFlags |= kTrapFlag;
    } else {
      exception->ContextRecord->EFlags &= ~kTrapFlag;
    }
    return EXCEPTION_CONTINUE_EXECUTION;
  }

  static inline int steps_left_ = 0;
  static inline std::function<void()> in_between_;
  void* handler_;
};

TEST(StandingTurnRaceTest, IsNeverHadByTwoWhereverItIsTakenBack) {
  constexpr int kMostSteps = 10'000;
  for (const bool second_keeps_it : {false, true}) {
    CStandingTurn first;
    CStandingTurn second;
    ASSERT_TRUE(first.Open());
    ASSERT_TRUE(second.Open());
    SingleSteps steps;
    int times_had = 0;
    int times_taken = 0;
    bool has_more_steps = true;

    for (int step = 1; has_more_steps && step < kMostSteps; ++step) {
      TakeTurns(first);
      bool first_has_it = false;
      bool is_taken = false;
      bool second_has_it = false;
      has_more_steps = steps.Run([&] { first_has_it = first.Enter(); }, step,
                                 [&] {
                                   is_taken = IsTakenBack(second);
                                   if (is_taken && second_keeps_it) {
                                     TakeTurns(second);
                                     second_has_it = second.Enter();
                                   }
                                 });

      EXPECT_FALSE(first_has_it && is_taken) << step;
      times_had += first_has_it ? 1 : 0;
      times_taken += is_taken ? 1 : 0;
      if (second_has_it) {
        EXPECT_FALSE(IsTakenBack(first)) << step;
        second.Leave();
      }
      if (first_has_it) {
        EXPECT_FALSE(IsTakenBack(second)) << step;
        first.Leave();
      }
      EXPECT_TRUE(IsTakenBack(second)) << step;
    }

    EXPECT_FALSE(has_more_steps);
    // Both come about: before and behind the instruction that decides.
    EXPECT_GT(times_had, 1);
    EXPECT_GT(times_taken, 10);
  }
}

}  // namespace
}  // namespace nhupdate_test
