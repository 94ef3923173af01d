// What code that is built with -fstack-protector calls: the value that it lays behind its buffers,
// and the end of a process in which that value was overwritten. The compiler's own library for this
// draws the value from the system's cryptographic provider, which loads half a dozen DLLs before
// the program begins (before it has restricted where DLLs may come from) and again, under the
// loader's lock, with each DLL of ours. Only what is built by GCC for Windows has this file, and
// only this file is made for one compiler.

#include <cstdint>

#include "base/windows.h"

// The names are the compiler's. The value that stands here holds until DrawGuard has run; before
// that only the run-time library's own code does.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" {
std::uintptr_t __stack_chk_guard = 0x4E48'5550'4441'5400;
[[noreturn]] void __stack_chk_fail();
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace {

// One round of a well-known mixing of 64 bits: each bit of what goes in changes half of the result.
std::uint64_t Mixed(std::uint64_t state, std::uint64_t value) {
  state = (state ^ value) + 0x9E37'79B9'7F4A'7C15;
  state = (state ^ (state >> 30)) * 0xBF58'476D'1CE4'E5B9;
  state = (state ^ (state >> 27)) * 0x94D0'49BB'1331'11EB;
  return state ^ (state >> 31);
}

// No single one of these is secret; who overwrites a buffer from outside would have to know all.
// The value changes under this function, so it must not be guarded itself, nor what calls it; as a
// constructor of the highest priority it is called by the run-time library alone.
__attribute__((constructor(101), no_stack_protector)) void DrawGuard() {
  FILETIME time = {};
  ::GetSystemTimePreciseAsFileTime(&time);
  LARGE_INTEGER counter = {};
  ::QueryPerformanceCounter(&counter);
  const std::uint64_t values[] = {
      (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime,
      static_cast<std::uint64_t>(counter.QuadPart),
      ::GetTickCount64(),
      (std::uint64_t{::GetCurrentProcessId()} << 32) | ::GetCurrentThreadId(),
      // Where Windows has put the image, the stack, the heap and its own libraries.
      reinterpret_cast<std::uintptr_t>(&__stack_chk_guard),
      reinterpret_cast<std::uintptr_t>(&time),
      reinterpret_cast<std::uintptr_t>(::GetProcessHeap()),
      reinterpret_cast<std::uintptr_t>(::GetModuleHandleW(L"kernel32.dll")),
  };
  std::uint64_t state = 0;
  for (const std::uint64_t value : values) {
    state = Mixed(state, value);
  }
  // The lowest byte, which lies next to the buffer, is the end of a text: a text that is too long
  // can't be copied over it and leave it as it was.
  __stack_chk_guard = static_cast<std::uintptr_t>(state & ~std::uint64_t{0xFF});
}

}  // namespace

// Ends the process with STATUS_STACK_BUFFER_OVERRUN without running any more of it; Windows still
// writes its crash dump.
void __stack_chk_fail() {
  // What __fastfail is for other compilers.
  __asm__ volatile("int $0x29" : : "c"(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE));
  __builtin_unreachable();
}
