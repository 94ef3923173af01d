#include "tests/support/wine.h"

#include "base/windows.h"

namespace nhupdate_test {

bool IsWine() {
  // Windows' own ntdll.dll has no such function.
  return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace nhupdate_test
