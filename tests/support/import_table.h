#pragma once

// Finds and changes the entries of the test executable's own import address table, through which
// the program's objects in it call Windows.

#include "base/windows.h"

namespace nhupdate_test {

// The slot through which this executable calls the function, whichever DLL it comes from. Ends the
// test run with a message when the executable doesn't import it: a fake that nobody calls would
// prove nothing.
[[nodiscard]] void** FindImportSlot(const char* function_name);

// Writes the slot, which lies in read-only memory.
void WriteImportSlot(void** slot, void* function);

}  // namespace nhupdate_test
