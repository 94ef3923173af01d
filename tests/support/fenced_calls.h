#pragma once

// What the fence's own parts share. The tests need only fence.h.

#include <string>
#include <vector>

#include "base/windows.h"

namespace nhupdate_test {

struct FencedFunction {
  const char* name;
  void* replacement;
  // Set by FenceInModule: the function to which the replacement passes calls on.
  void** real;
};

[[nodiscard]] const std::vector<FencedFunction>& FencedFileCalls();
[[nodiscard]] const std::vector<FencedFunction>& FencedRegistryCalls();
[[nodiscard]] const std::vector<FencedFunction>& FencedProcessCalls();

// Puts the fence into the import table of the executable or of a library. Functions that aren't in
// the table are left out.
void FenceInModule(HMODULE module);

// Ends the run with a message, unless AllowOutside has opened the fence.
void RefuseUnlessAllowed(const char* function, const std::wstring& argument);

}  // namespace nhupdate_test
