#pragma once

// Want of memory ends the process at once, wherever it comes from, and with one code. There is
// nothing sensible to go on with: what a run has done by then it finds again when it is started
// again. The program's codes are all small, so this one can't be taken for one of them.

namespace nhupdate {

// STATUS_NO_MEMORY: what Windows itself calls it, and shows to who looks the code up.
inline constexpr unsigned long kWantOfMemoryExitCode = 0xC0000017;

// From now on, for all allocations of the module (the program or the library) that calls it.
void EndProcessWhenMemoryRunsOut();

// For want of memory that Windows reports. Nothing is cleaned up, for that could need memory too.
[[noreturn]] void EndProcessForWantOfMemory();

}  // namespace nhupdate
