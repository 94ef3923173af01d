#pragma once

// Counts the calls of a run into Windows, decides which of them fails, and keeps account of what
// was opened and not yet closed.

#include <cstddef>
#include <map>
#include <optional>
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

// What fails: one call, counted from 0, or every call of a function, or nothing.
struct Fault {
  std::optional<std::size_t> call;
  std::string function;
  DWORD error = ERROR_SUCCESS;
};

class CallLedger {
 public:
  explicit CallLedger(Fault fault) : fault_(std::move(fault)) {}

  // Nothing is counted before Begin and after End: the test itself calls Windows too.
  void Begin() { is_counting_ = true; }
  void End() { is_counting_ = false; }

  // Counts a call and says whether it is to fail.
  [[nodiscard]] bool CountAndDecide(const char* function, const std::wstring& detail);

  void Opened(ResourceKind kind, const void* resource, const std::wstring& detail);
  void Closed(ResourceKind kind, const void* resource);

  // What a handle was opened for; empty for one that is not of this run.
  [[nodiscard]] std::wstring DetailOf(const void* resource) const;

  [[nodiscard]] DWORD Error() const { return fault_.error; }
  [[nodiscard]] const std::vector<Call>& Calls() const { return calls_; }

  // What is still open, by what it was opened for.
  [[nodiscard]] std::vector<std::wstring> StillOpen() const;

  // How often something was closed that was closed before.
  [[nodiscard]] int ClosedTwice() const { return closed_twice_; }

 private:
  using Resource = std::pair<ResourceKind, const void*>;

  Fault fault_;
  bool is_counting_ = false;
  std::vector<Call> calls_;
  std::map<Resource, std::wstring> open_;
  std::set<Resource> closed_;
  int closed_twice_ = 0;
};

}  // namespace nhupdate_test
