// Whole runs of the program, in each of which one call into Windows fails: every call of every
// workflow in turn.

#include <set>
#include <sstream>

#include "base/strings.h"
#include "base/want_of_memory.h"
#include "tests/support/golden.h"
#include "tests/support/windows_basics.h"
#include "tests/unit/faults/fault_rules.h"
#include "tests/unit/faults/scenario.h"

namespace nhupdate_test {
namespace {

constexpr wchar_t kInstalled[] = L"\\NHUpdateManager";
constexpr wchar_t kStaged[] = L"\\Updater\\App\\NHUpdateManager";

const Scenario kScenarios[] = {
    {"Download", L"-download", kInstalled, 1, 0, "2.0.0", true, 12, {0, 1, 11, 12, 13, 14}},
    {"NoUpdate", L"-download", kInstalled, 1, 0, "1.0.0", false, 11, {0, 1, 11, 12, 13, 14}},
    {"Install", L"-install", kInstalled, 1, 0, "2.0.0", true, 0, {0, 1, 2, 4, 10}},
    {"Update", L"-update", kInstalled, 0, 0, "2.0.0", true, 0, {0, 1, 10, 13, 14, 15, 16}},
    {"FailedUpdate", L"-update", kInstalled, 0, 9, "2.0.0", true, 13, {0, 1, 10, 13, 14, 15, 16}},
    {"SelfUpdate", L"-self_update", kStaged, 1, 0, "2.0.0", true, 0, {0, 1, 10, 15, 16}},
    {"FinalUpdate", L"-final_update", kInstalled, 1, 0, "2.0.0", true, 0, {0, 1, 2, 4, 10}},
};

bool HasRecord(const RunReport& report, const std::wstring& beginning) {
  return std::any_of(report.transcript.begin(), report.transcript.end(),
                     [&](const std::wstring& record) { return record.starts_with(beginning); });
}

// The records of retries and failures that a clean run doesn't have, or not as often.
std::vector<std::wstring> NewComplaints(const RunReport& clean, const RunReport& report) {
  std::vector<std::wstring> known = clean.transcript;
  std::vector<std::wstring> complaints;
  for (const std::wstring& record : report.transcript) {
    const auto same = std::find(known.begin(), known.end(), record);
    if (same != known.end()) {
      known.erase(same);
    } else if (record.starts_with(L"3|") || record.starts_with(L"4|")) {
      complaints.push_back(record);
    }
  }
  return complaints;
}

// After a failed update the program leaves the handle of its updater's process open on purpose.
std::size_t ProcessesLeftOpen(const Scenario& scenario, const RunReport& report) {
  return scenario.update_exit_code != 0 && report.result == 13 ? 1 : 0;
}

// At most ten tries to copy, with a sleep after each, and one sleep after processes were stopped.
void ExpectTheRunIsSound(const Scenario& scenario, const RunReport& clean,
                         const RunReport& report) {
  EXPECT_THAT(scenario.possible_results, Contains(report.result));
  EXPECT_EQ(report.still_open.size(), ProcessesLeftOpen(scenario, report))
      << PrintToString(report.still_open);
  EXPECT_EQ(report.closed_twice, 0);
  EXPECT_LE(report.sleeps, 11u);
  EXPECT_LE(report.launches, clean.launches + 1);
}

void ExpectTheRuleIsKept(const FaultRule& rule, DWORD error, const Scenario& scenario,
                         const RunReport& clean, const RunReport& report) {
  EXPECT_EQ(report.result, rule.outcome.result.value_or(scenario.clean_result));
  if (rule.outcome.record == nullptr) {
    EXPECT_THAT(NewComplaints(clean, report), IsEmpty());
    return;
  }
  std::wstring record = rule.outcome.record;
  ReplaceAll(record, L"{error}", std::to_wstring(error));
  EXPECT_FALSE(HasRecord(clean, record)) << "The record says nothing about the failure.";
  EXPECT_TRUE(HasRecord(report, record))
      << PrintToString(record) << " is not in " << PrintToString(report.transcript);
}

// The run is in a process of its own, which ends with it.
void ExpectTheProcessEnds(const Scenario& scenario, const Fault& fault) {
  EXPECT_EXIT(std::ignore = RunWithFault(scenario, fault),
              testing::ExitedWithCode(static_cast<int>(kWantOfMemoryExitCode)), "");
}

// How often each function is called, which shows when a call is dropped altogether. The calls that
// ask for the names of the folders above the scratch folder are left out: how many there are
// depends on the machine.
std::vector<std::wstring> CountsOf(const std::vector<Call>& calls) {
  std::map<std::string, int> counts;
  for (const Call& call : calls) {
    const bool is_above =
        call.detail.find(L'{') == std::wstring::npos && call.detail.ends_with(L" (its name)");
    counts[call.function] += is_above ? 0 : 1;
  }
  std::vector<std::wstring> lines;
  for (const auto& [function, count] : counts) {
    lines.push_back(std::wstring(function.begin(), function.end()) + L" " + std::to_wstring(count));
  }
  return lines;
}

class FaultsTest : public testing::TestWithParam<Scenario> {
 protected:
  void FailEveryCall(DWORD error_of_even_calls, DWORD error_of_odd_calls) {
    const Scenario& scenario = GetParam();
    const RunReport clean = RunWithFault(scenario, {});
    for (std::size_t index = 0; index < clean.calls.size() && !HasFailure(); ++index) {
      const Call& call = clean.calls[index];
      SCOPED_TRACE(testing::Message()
                   << "call " << index << ": " << call.function << " " << PrintToString(call.detail)
                   << ", occurrence " << call.occurrence);
      const DWORD error = index % 2 == 0 ? error_of_even_calls : error_of_odd_calls;
      const FaultRule* rule = FindRule(scenario.name, call, error);
      ASSERT_NE(rule, nullptr) << "There is no rule for this call.";
      const Fault fault = {.call = index, .function = {}, .error = error};
      if (rule->outcome.result == kProcessEnds) {
        ExpectTheProcessEnds(scenario, fault);
        continue;
      }

      const RunReport report = RunWithFault(scenario, fault);

      ASSERT_GT(report.calls.size(), index);
      EXPECT_EQ(report.calls[index], call) << "Another call has failed.";
      ExpectTheRunIsSound(scenario, clean, report);
      ExpectTheRuleIsKept(*rule, error, scenario, clean, report);
    }
  }
};

TEST_P(FaultsTest, NothingFailsInACleanRun) {
  const RunReport clean = RunWithFault(GetParam(), {});

  EXPECT_EQ(clean.result, GetParam().clean_result);
  ExpectTheRunIsSound(GetParam(), clean, clean);
  ExpectGolden(CountsOf(clean.calls));
}

// Each call meets two errors: one here, and one in the next test.
TEST_P(FaultsTest, EveryCallThatFindsNothingOrNoAccessIsAnsweredFor) {
  FailEveryCall(ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED);
}

TEST_P(FaultsTest, EveryCallThatMeetsALockOrAFullDiskIsAnsweredFor) {
  FailEveryCall(ERROR_SHARING_VIOLATION, ERROR_DISK_FULL);
}

// The outcomes of such runs differ too much for rules, but each run must come to a sound end.
TEST_P(FaultsTest, AFunctionThatAlwaysFailsIsSurvived) {
  const RunReport clean = RunWithFault(GetParam(), {});
  std::set<std::string> functions;
  for (const Call& call : clean.calls) {
    if (FindRule(GetParam().name, call, ERROR_ACCESS_DENIED)->outcome.result != kProcessEnds) {
      functions.insert(call.function);
    }
  }
  for (const std::string& function : functions) {
    SCOPED_TRACE(function);

    const RunReport report =
        RunWithFault(GetParam(), {.call = {}, .function = function, .error = ERROR_ACCESS_DENIED});

    ExpectTheRunIsSound(GetParam(), clean, report);
  }
}

TEST(FaultRulesTest, EveryRuleIsForSomeCallOfEachFunction) {
  std::set<std::pair<const FaultRule*, std::string>> needed;
  for (const Scenario& scenario : kScenarios) {
    for (const Call& call : RunWithFault(scenario, {}).calls) {
      for (const DWORD error : {DWORD{ERROR_FILE_NOT_FOUND}, DWORD{ERROR_ACCESS_DENIED}}) {
        needed.emplace(FindRule(scenario.name, call, error), call.function);
      }
    }
  }

  for (const FaultRule& rule : AllRules()) {
    std::istringstream functions(rule.functions);
    for (std::string function; functions >> function;) {
      EXPECT_TRUE(needed.contains({&rule, function}))
          << rule.scenarios << ": " << function << " " << PrintToString(std::wstring(rule.detail));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllWorkflows, FaultsTest, testing::ValuesIn(kScenarios),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace nhupdate_test
