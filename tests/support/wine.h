#pragma once

// Whether the tests run under Wine, which differs from Windows in places that some tests know of.

#include <string>

#include "base/windows.h"

namespace nhupdate_test {

// Such as "8.0"; empty on Windows. Only Wine's ntdll.dll has the function.
[[nodiscard]] inline std::string WineVersion() {
  using GetVersion = const char*(__cdecl*)();
  const auto get_version = reinterpret_cast<GetVersion>(reinterpret_cast<void (*)()>(
      ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version")));
  return get_version != nullptr ? get_version() : "";
}

[[nodiscard]] inline bool IsWine() {
  return !WineVersion().empty();
}

}  // namespace nhupdate_test
