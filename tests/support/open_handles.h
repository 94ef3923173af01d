#pragma once

// How many handles this process has open. Windows' own function for that always answers 0 under
// Wine, so the list of all handles of the system is counted.

namespace nhupdate_test {

// Ends the test run with a message when the list can't be had.
[[nodiscard]] int CountOpenHandles();

}  // namespace nhupdate_test
