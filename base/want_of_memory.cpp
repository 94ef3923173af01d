#include "base/want_of_memory.h"

#include <cstdlib>
#include <new>

#include "base/windows.h"

namespace nhupdate {

void EndProcessWhenMemoryRunsOut() {
  std::set_new_handler(EndProcessForWantOfMemory);
}

void EndProcessForWantOfMemory() {
  ::TerminateProcess(::GetCurrentProcess(), kWantOfMemoryExitCode);
  std::abort();  // if somebody keeps the process from ending itself
}

}  // namespace nhupdate
