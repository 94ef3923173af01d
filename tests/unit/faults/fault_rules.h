#pragma once

// What the program owes its user when a call fails: the right result, and a record, or a good
// reason for having none.

#include <optional>
#include <span>

#include "tests/unit/faults/call_ledger.h"

namespace nhupdate_test {

// Instead of a result: the process ends at once, as it does for want of memory.
inline constexpr int kProcessEnds = -1;

struct FaultRule {
  const char* scenarios;      // the names of those it is for, separated by blanks; empty for all
  const char* functions;      // separated by blanks
  const wchar_t* detail;      // the end of the call's detail after a "*", else a part of it
  int occurrences;            // the first so many; 0 for all
  std::optional<int> result;  // where it isn't that of a clean run
  const wchar_t* record;      // how a record begins; "{error}" stands for the error
  const char* why_no_record;  // where there is none, and no other failure or retry is recorded
  std::optional<DWORD> error = std::nullopt;  // where the rule is for this error alone
};

[[nodiscard]] std::span<const FaultRule> AllRules();

// The rule for a call that fails with that error; null when nobody thought of it.
[[nodiscard]] const FaultRule* FindRule(const char* scenario, const Call& call, DWORD error);

}  // namespace nhupdate_test
