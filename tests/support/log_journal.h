#pragma once

// What the recording log library was called with, by all processes of a run, in order.

#include <string>
#include <vector>

#include "base/windows.h"

namespace nhupdate_test {

// The environment variable that tells the recording log library where its journal is. The library
// must be loaded after it was set.
inline constexpr wchar_t kLogJournalVariable[] = L"NHUPDATE_LOG_JOURNAL";

struct LogCall {
  DWORD process_id = 0;
  std::wstring entry;                   // "Start", "Stop", "Flush" or "WriteLog"
  std::vector<std::wstring> arguments;  // as text; line ends as U+240A and U+240D

  bool operator==(const LogCall&) const = default;
};

// All calls so far; none when there is no journal yet. A line without exactly the arguments of its
// entry is a test failure.
[[nodiscard]] std::vector<LogCall> ReadLogJournal(const std::wstring& path);

// The call as L"Entry|argument|argument".
[[nodiscard]] std::wstring DescribeCall(const LogCall& call);

// The records among them, as L"level|text".
[[nodiscard]] std::vector<std::wstring> RecordsOf(const std::vector<LogCall>& calls);

}  // namespace nhupdate_test
