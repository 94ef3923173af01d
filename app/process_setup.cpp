#include "app/process_setup.h"

#include "base/want_of_memory.h"
#include "base/windows.h"

namespace nhupdate {

bool SetUpProcess() {
  EndProcessWhenMemoryRunsOut();
  // SEM_NOGPFAULTERRORBOX is left out: it would also turn off the dumps of crashes.
  constexpr UINT kNoDialogs = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;
  // For the one thread that there is, and not for the process: that mode would be inherited by the
  // children, who may have other ideas.
  ::SetThreadErrorMode(::GetThreadErrorMode() | kNoDialogs, nullptr);
  return ::SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS) != FALSE;
}

}  // namespace nhupdate
