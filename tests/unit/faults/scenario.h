#pragma once

// One whole run of the program in a scratch folder, during which calls into Windows may fail.

#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "tests/unit/faults/call_ledger.h"

namespace nhupdate_test {

struct Scenario {
  const char* name;
  const wchar_t* mode_switch;
  const wchar_t* module;       // where the running executable lies, below the base folder
  DWORD check_exit_code;       // of the updater when it is asked for something new
  DWORD update_exit_code;      // of the updater when it updates the product
  const char* staged_version;  // 1.0.0 is installed
  bool has_steam;              // whose setting tells the language
  int clean_result;
  std::set<int> possible_results;  // all results that the mode can end with
};

void PrintTo(const Scenario& scenario, std::ostream* stream);

struct RunReport {
  int result = 0;
  std::vector<Call> calls;
  std::vector<std::wstring> transcript;
  std::vector<std::wstring> still_open;
  int closed_twice = 0;
  std::size_t launches = 0;
  std::size_t sleeps = 0;
};

// Runs the program in a new installation; with a default Fault no call fails.
[[nodiscard]] RunReport RunWithFault(const Scenario& scenario, const Fault& fault);

}  // namespace nhupdate_test
