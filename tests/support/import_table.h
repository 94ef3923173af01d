#pragma once

// Finds and changes the entries of an import address table: that of the test executable, through
// which the program's objects in it call Windows, or that of a library it has loaded.

#include "base/windows.h"

namespace nhupdate_test {

// The slot through which the module, or this executable if it is null, calls the function,
// whichever DLL that comes from. Ends the test run with a message when the module doesn't import
// the function: a fake that nobody can call would prove nothing.
[[nodiscard]] void** FindImportSlot(const char* function_name, HMODULE module = nullptr);

// The same; null when the module doesn't import the function.
[[nodiscard]] void** FindImportSlotIfAny(const char* function_name, HMODULE module = nullptr);

// Writes the slot, which lies in read-only memory; ends the test run with a message if it can't.
void WriteImportSlot(void** slot, void* function);

}  // namespace nhupdate_test
