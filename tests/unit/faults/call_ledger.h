#pragma once

// Counts the calls into Windows during a run, decides which of them fail, and knows what was opened
// and not yet closed.

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
  std::wstring detail;  // its text arguments, and what its handles were opened for
  int occurrence = 1;   // counts the calls of the same function with the same detail

  bool operator==(const Call&) const = default;
};

// One kind for each function that closes something.
enum class ResourceKind { kHandle, kSearch, kKey, kLibrary };

// What fails, and with which error: one call, counted from 0, or every call of a function, or none.
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

  // What an open handle was opened for; empty for a handle that wasn't opened in this run.
  [[nodiscard]] std::wstring DetailOf(const void* resource) const;

  [[nodiscard]] DWORD Error() const { return fault_.error; }
  [[nodiscard]] const std::vector<Call>& Calls() const { return calls_; }

  // What each thing that is still open was opened for.
  [[nodiscard]] std::vector<std::wstring> StillOpen() const;

  // How often something was closed that was closed already.
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
