#pragma once

// Names for what a test puts into a place that all processes share.

#include <string>

namespace nhupdate_test {

// A name that was never used before. A process id would not do: Windows gives it to later processes
// too, and what an earlier one has deleted keeps its name until the last handle to it is closed.
[[nodiscard]] std::wstring UnusedName();

}  // namespace nhupdate_test
