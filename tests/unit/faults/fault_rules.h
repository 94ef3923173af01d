#pragma once

// What the program owes its user when a call fails: the right result, and a record in the log or a
// good reason for having none.

#include <optional>
#include <span>

#include "tests/unit/faults/call_ledger.h"

namespace nhupdate_test {

// What must come of a run in which a call fails. Either a record is written that begins with
// `record` ("{error}" stands for the error), or `why_no_record` says why there is none; then no
// retry or other failure is recorded either. Without `result` it is that of a clean run.
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

// As a result: the process ends at once, as it does for want of memory.
inline constexpr int kProcessEnds = -1;

// As a number of occurrences.
inline constexpr int kAll = 0;

struct FaultRule {
  const char* scenarios;  // their names, separated by blanks; empty for all
  const char* functions;  // separated by blanks
  const wchar_t* detail;  // a part of the call's detail, or after a "*" its end
  Outcome outcome;
  int occurrences = kAll;                     // for the first that many calls
  std::optional<DWORD> error = std::nullopt;  // for this error alone; nothing for all
};

[[nodiscard]] std::span<const FaultRule> AllRules();

// The rule for a call that fails with that error; null when there is none.
[[nodiscard]] const FaultRule* FindRule(const char* scenario, const Call& call, DWORD error);

}  // namespace nhupdate_test
