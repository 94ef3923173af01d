#pragma once

// Some tests change what belongs to a whole machine: the registry's HKEY_LOCAL_MACHINE, the folder
// for all users, other processes, the rights to folders, the screen. They are for a machine that
// nobody needs afterwards: a Wine prefix, or a machine whose user says so by this variable.

#include <array>
#include <string>

#include "base/windows.h"
#include "tests/support/wine.h"

namespace nhupdate_test {

// An environment variable; only the value 1 counts.
inline constexpr wchar_t kThrowawayVariable[] = L"NHUPDATE_THROWAWAY_MACHINE";

// What is printed instead of running such tests.
inline constexpr char kMachineIsKept[] =
    "Changes what belongs to the whole machine. Runs under Wine, or where "
    "NHUPDATE_THROWAWAY_MACHINE=1 says that the machine may be thrown away.";

[[nodiscard]] inline bool IsThrowawayMachine() {
  if (IsWine()) {
    return true;
  }
  std::array<wchar_t, 4> value = {};
  ::GetEnvironmentVariableW(kThrowawayVariable, value.data(), static_cast<DWORD>(value.size()));
  return value.data() == std::wstring(L"1");
}

}  // namespace nhupdate_test
