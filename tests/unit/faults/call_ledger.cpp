#include "tests/unit/faults/call_ledger.h"

#include <algorithm>

namespace nhupdate_test {

bool CallLedger::CountAndDecide(const char* function, const std::wstring& detail) {
  if (!is_counting_) {
    return false;
  }
  const auto same = std::count_if(calls_.begin(), calls_.end(), [&](const Call& call) {
    return call.function == function && call.detail == detail;
  });
  calls_.push_back({function, detail, static_cast<int>(same) + 1});
  return fault_.call == calls_.size() - 1 || fault_.function == function;
}

void CallLedger::Opened(ResourceKind kind, const void* resource, const std::wstring& detail) {
  if (is_counting_ && resource != nullptr && resource != INVALID_HANDLE_VALUE) {
    open_[{kind, resource}] = detail;
    closed_.erase({kind, resource});
  }
}

void CallLedger::Closed(ResourceKind kind, const void* resource) {
  if (!is_counting_) {
    return;
  }
  if (open_.erase({kind, resource}) != 0) {
    closed_.insert({kind, resource});
  } else if (closed_.contains({kind, resource})) {
    ++closed_twice_;
  }
}

std::wstring CallLedger::DetailOf(const void* resource) const {
  for (const auto& [open, detail] : open_) {
    if (open.second == resource) {
      return detail;
    }
  }
  return {};
}

std::vector<std::wstring> CallLedger::StillOpen() const {
  std::vector<std::wstring> details;
  for (const auto& [resource, detail] : open_) {
    details.push_back(detail);
  }
  return details;
}

}  // namespace nhupdate_test
