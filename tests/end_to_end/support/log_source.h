#pragma once

// The records of a run, whichever log library got them.

#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/end_to_end/support/installed_hub.h"

namespace nhupdate_test {

struct HubLogRecord {
  DWORD process_id = 0;
  std::wstring tag;
  std::wstring text;  // L"level|text"
};

// The tag of the record with which the packaged library begins the log of every process.
inline constexpr wchar_t kHeaderTag[] = L"NSWLogDynamic64U";

// All records in the order in which they were written: those in the packaged library's file when
// there is one, else those that a recording library got.
[[nodiscard]] std::vector<HubLogRecord> ReadLog(const CInstalledHub& hub);

// Whether the packaged library's file has the text in it already; for while the program runs.
[[nodiscard]] bool LogHolds(const CInstalledHub& hub, const std::string& text);

}  // namespace nhupdate_test
