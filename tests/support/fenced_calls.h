#pragma once

// What the parts of the fence know of each other. The tests need only fence.h.

#include <string>
#include <vector>

#include "base/windows.h"

namespace nhupdate_test {

struct FencedFunction {
  const char* name;
  void* replacement;
  // Where the replacement finds the function itself.
  void** real;
};

[[nodiscard]] const std::vector<FencedFunction>& FencedFileCalls();
[[nodiscard]] const std::vector<FencedFunction>& FencedRegistryCalls();
[[nodiscard]] const std::vector<FencedFunction>& FencedProcessCalls();

// Puts the fence into the import table of the executable or of a library. What they don't import
// they can't call.
void FenceInModule(HMODULE module);

// Ends the run with a message, unless a test has said that it goes outside.
void RefuseUnlessAllowed(const char* function, const std::wstring& argument);

}  // namespace nhupdate_test
