#pragma once

// What the program owes its user when a call fails: the right result, and a record, or a good
// reason for having none.

#include <optional>
#include <span>

#include "tests/unit/faults/call_ledger.h"

namespace nhupdate_test {

// What comes of a run in which a call fails: a result where it isn't that of a clean run, and
// either a record, of which this is the beginning with "{error}" for the error, or a reason why
// there is none, and no other failure or retry is recorded either.
struct Outcome {
  const wchar_t* record = nullptr;
  const char* why_no_record = nullptr;
  std::optional<int> result = std::nullopt;

  constexpr Outcome(const wchar_t* told) : record(told) {}
  constexpr Outcome(const char* why) : why_no_record(why) {}
};

[[nodiscard]] constexpr Outcome Result(int result, Outcome outcome) {
  outcome.result = result;
  return outcome;
}

// The process ends at once, as it does for want of memory.
inline constexpr int kProcessEnds = -1;

struct FaultRule {
  const char* scenarios;  // the names of those it is for, separated by blanks; empty for all
  const char* functions;  // separated by blanks
  const wchar_t* detail;  // the end of the call's detail after a "*", else a part of it
  Outcome outcome;
  int occurrences = 0;                        // the first so many; 0 for all
  std::optional<DWORD> error = std::nullopt;  // where the rule is for this error alone
};

[[nodiscard]] std::span<const FaultRule> AllRules();

// The rule for a call that fails with that error; null when nobody thought of it.
[[nodiscard]] const FaultRule* FindRule(const char* scenario, const Call& call, DWORD error);

}  // namespace nhupdate_test
