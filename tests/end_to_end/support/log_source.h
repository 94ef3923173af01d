#pragma once

// The records of a run, whichever log library wrote them.

#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/end_to_end/support/installed_hub.h"

namespace nhupdate_test {

struct LogRecord {
  DWORD process_id = 0;
  std::wstring text;  // L"level|text"
};

// All records in the order in which they were written: those of the shipped library's file when
// there is one, else those that the recording library got. The header with which the shipped
// library begins names things of the machine; only the executable in it is kept.
[[nodiscard]] std::vector<LogRecord> ReadLog(const CInstalledHub& hub);

}  // namespace nhupdate_test
