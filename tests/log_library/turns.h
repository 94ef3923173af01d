#pragma once

// What several tests of the standing turn do with it.

#include "log_library/standing_turn.h"

namespace nhupdate_test {

// Whoever has taken so many alone keeps the next.
inline constexpr int kEnoughTurns = nhupdate::CStandingTurn::kTurnsInARow;

inline void TakeTurns(nhupdate::CStandingTurn& turn, int count = kEnoughTurns) {
  for (int number = 0; number < count; ++number) {
    turn.CountTurn();
  }
}

// As whoever has got the mutex asks it.
[[nodiscard]] inline bool IsTakenBack(nhupdate::CStandingTurn& turn) {
  turn.TakeBack();
  return turn.IsOver();
}

}  // namespace nhupdate_test
