// Does nothing, but for COM, which the program always begins: same_imports [com]. The file with the
// table is made from the program's own list of imports (bench/list_imports.py), so that the same
// libraries are loaded and the same functions are found.

#include "base/windows.h"

#include <objbase.h>  // needs <windows.h> first

extern "C" const void* const volatile* SameImports();

int main(int argument_count, char**) {
  if (argument_count > 1) {
    ::CoInitialize(nullptr);
    ::CoUninitialize();
  }
  return *SameImports() == nullptr ? 1 : 0;
}
