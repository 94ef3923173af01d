#pragma once

// What the program owes its user when a call fails: the right result, and a record, or a good
// reason for having none.

#include <optional>

#include "tests/unit/faults/call_ledger.h"

namespace nhupdate_test {

struct FaultRule {
  const char* scenarios;  // the names of those it is for, separated by blanks; empty for all
  const char* function;
  const wchar_t* detail;      // the end of the call's detail after a "*", else a part of it
  int occurrence;             // 0 for all
  std::optional<int> result;  // where it isn't that of a clean run
  const wchar_t* record;      // how a record begins; "{error}" stands for the error
  const char* why_no_record;  // where there is none
};

// The rule for the call; null when nobody thought of it.
[[nodiscard]] const FaultRule* FindRule(const char* scenario, const Call& call);

}  // namespace nhupdate_test
