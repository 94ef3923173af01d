#pragma once

// Counts the calls of a run into Windows, decides which of them fails, and keeps account of what
// was opened and not yet closed.

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/windows.h"

namespace nhupdate_test {

struct Call {
  std::string function;
  std::wstring detail;  // its texts, and what its handles stand for
  int occurrence = 1;   // of the same function with the same detail

  bool operator==(const Call&) const = default;
};

// By the function that closes them.
enum class ResourceKind { kHandle, kSearch, kKey, kLibrary };

class CallLedger {
 public:
  static constexpr std::size_t kNoCall = static_cast<std::size_t>(-1);

  // The call of that index, counted from 0, fails with the error.
  CallLedger(std::size_t failing_call, DWORD error) : failing_call_(failing_call), error_(error) {}

  // Nothing is counted before Begin and after End: the test itself calls Windows too.
  void Begin() { is_counting_ = true; }
  void End() { is_counting_ = false; }

  // Counts a call and says whether it is to fail.
  [[nodiscard]] bool CountAndDecide(const char* function, const std::wstring& detail);

  void Opened(ResourceKind kind, const void* resource, const std::wstring& detail);
  void Closed(ResourceKind kind, const void* resource);

  // What a handle was opened for; empty for one that is not of this run.
  [[nodiscard]] std::wstring DetailOf(const void* resource) const;

  [[nodiscard]] DWORD Error() const { return error_; }
  [[nodiscard]] const std::vector<Call>& Calls() const { return calls_; }

  // What is still open, by what it was opened for.
  [[nodiscard]] std::vector<std::wstring> StillOpen() const;

  // How often something was closed that was closed before.
  [[nodiscard]] int ClosedTwice() const { return closed_twice_; }

 private:
  using Resource = std::pair<ResourceKind, const void*>;

  std::size_t failing_call_;
  DWORD error_;
  bool is_counting_ = false;
  std::vector<Call> calls_;
  std::map<Resource, std::wstring> open_;
  std::set<Resource> closed_;
  int closed_twice_ = 0;
};

}  // namespace nhupdate_test
