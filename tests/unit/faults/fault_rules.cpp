#include "tests/unit/faults/fault_rules.h"

#include <string>
#include <string_view>

namespace nhupdate_test {

namespace {

bool IsAmong(const std::string& names, const std::string& name) {
  return (" " + names + " ").find(" " + name + " ") != std::string::npos;
}

bool FitsDetail(const FaultRule& rule, const std::wstring& detail) {
  const std::wstring_view pattern = rule.detail;
  if (pattern.starts_with(L'*')) {
    return detail.ends_with(pattern.substr(1));
  }
  return detail.find(pattern) != detail.npos;
}

}  // namespace

const FaultRule* FindRule(const char* scenario, const Call& call, DWORD error) {
  for (const FaultRule& rule : AllRules()) {
    if ((*rule.scenarios == '\0' || IsAmong(rule.scenarios, scenario)) &&
        IsAmong(rule.functions, call.function) && FitsDetail(rule, call.detail) &&
        (rule.occurrences == kAll || call.occurrence <= rule.occurrences) &&
        (!rule.error || *rule.error == error)) {
      return &rule;
    }
  }
  return nullptr;
}

}  // namespace nhupdate_test
