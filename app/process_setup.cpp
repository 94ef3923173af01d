#include "app/process_setup.h"

#include <tuple>

#include "base/windows.h"

namespace nhupdate {

bool SetUpProcess() {
  // SEM_NOGPFAULTERRORBOX is left out: it would also turn off the dumps of crashes.
  constexpr UINT kNoDialogs = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;
  std::ignore = ::SetErrorMode(::GetErrorMode() | kNoDialogs);  // the old mode never comes back
  return ::SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS) != FALSE;
}

}  // namespace nhupdate
