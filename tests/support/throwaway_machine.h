#pragma once

// Some tests change what belongs to a whole machine: the registry's HKEY_LOCAL_MACHINE, the folder
// for all users, other processes, the rights to folders, the screen. They are for a machine that
// nobody needs afterwards: a Wine prefix is one, and any other that somebody says so of.

namespace nhupdate_test {

// Set to 1 by whoever says so.
inline constexpr wchar_t kThrowawayVariable[] = L"NHUPDATE_THROWAWAY_MACHINE";

// What the tests say that don't run here.
inline constexpr char kMachineIsKept[] =
    "Changes what belongs to the whole machine. Runs under Wine, or where "
    "NHUPDATE_THROWAWAY_MACHINE=1 says that the machine may be thrown away.";

[[nodiscard]] bool IsThrowawayMachine();

}  // namespace nhupdate_test
