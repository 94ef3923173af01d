#pragma once

// Names for what a test puts into a place that all processes share.

#include <string>

namespace nhupdate_test {

// A name that was never used before. The process id would not do: Windows gives it away again, and
// what an earlier process has deleted keeps its name until the last handle to it is closed.
[[nodiscard]] std::wstring UnusedName();

}  // namespace nhupdate_test
