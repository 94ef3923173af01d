#include "tests/support/preferred_languages.h"

namespace nhupdate_test {

PreferredLanguages::PreferredLanguages(std::vector<std::wstring> names, int failing_call)
    : count_(static_cast<ULONG>(names.size())),
      failing_call_(failing_call),
      interposer_([this](DWORD flags, ULONG* count, wchar_t* buffer, ULONG* units) {
        return Answer(flags, count, buffer, units);
      }) {
  for (const std::wstring& name : names) {
    list_ += name + L'\0';
  }
  list_ += L'\0';
}

BOOL PreferredLanguages::Answer(DWORD flags, ULONG* count, wchar_t* buffer, ULONG* units) {
  arguments_.push_back({flags, buffer != nullptr, *units});
  if (failing_call_ > 0 && Calls() >= failing_call_) {
    ::SetLastError(ERROR_GEN_FAILURE);
    return FALSE;
  }
  const ULONG needed = static_cast<ULONG>(list_.size());
  if (buffer != nullptr && *units < needed) {
    ::SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return FALSE;
  }
  if (buffer != nullptr) {
    list_.copy(buffer, list_.size());
  }
  *count = count_;
  *units = needed;
  return TRUE;
}

}  // namespace nhupdate_test
