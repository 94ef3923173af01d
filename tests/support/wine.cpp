#include "tests/support/wine.h"

#include "base/windows.h"

namespace nhupdate_test {

namespace {

using GetVersion = const char*(__cdecl*)();

// Windows' own ntdll.dll has no such function.
GetVersion FindGetVersion() {
  return reinterpret_cast<GetVersion>(reinterpret_cast<void (*)()>(
      ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version")));
}

}  // namespace

bool IsWine() {
  return FindGetVersion() != nullptr;
}

std::string WineVersion() {
  const GetVersion get_version = FindGetVersion();
  return get_version != nullptr ? get_version() : "";
}

}  // namespace nhupdate_test
