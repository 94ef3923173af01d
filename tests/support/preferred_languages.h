#pragma once

// Windows' list of the user's preferred languages, replaced.

#include "tests/support/windows_basics.h"

namespace nhupdate_test {

class PreferredLanguages {
 public:
  // From this call on (1 is the first) every call fails; with 0 none does.
  explicit PreferredLanguages(const std::vector<std::wstring>& names, int failing_call = 0)
      : count_(static_cast<ULONG>(names.size())), failing_call_(failing_call) {
    for (const std::wstring& name : names) {
      list_ += name + L'\0';
    }
    list_ += L'\0';
  }

  [[nodiscard]] int Calls() const { return interposer_.Calls(); }

  // The arguments of each call, in order: flags, whether there was a buffer, and how many units the
  // caller said it holds.
  struct Call {
    DWORD flags = 0;
    bool has_buffer = false;
    ULONG units = 0;

    bool operator==(const Call&) const = default;
  };
  [[nodiscard]] const std::vector<Call>& Arguments() const { return arguments_; }

 private:
  BOOL Answer(DWORD flags, ULONG* count, wchar_t* buffer, ULONG* units) {
    arguments_.push_back({flags, buffer != nullptr, *units});
    const ULONG needed = static_cast<ULONG>(list_.size());
    const bool fails = failing_call_ > 0 && Calls() >= failing_call_;
    if (fails || (buffer != nullptr && *units < needed)) {
      ::SetLastError(fails ? ERROR_GEN_FAILURE : ERROR_INSUFFICIENT_BUFFER);
      return FALSE;
    }
    if (buffer != nullptr) {
      list_.copy(buffer, list_.size());
    }
    *count = count_;
    *units = needed;
    return TRUE;
  }

  std::wstring list_;  // with a NUL behind every name and one at the end
  ULONG count_;
  int failing_call_;
  std::vector<Call> arguments_;
  INTERPOSER(GetUserPreferredUILanguages) interposer_{
      std::bind_front(&PreferredLanguages::Answer, this)};
};

}  // namespace nhupdate_test
