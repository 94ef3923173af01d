#include "app/process_setup.h"

#include "base/windows.h"

namespace nhupdate {

bool SetUpProcess() {
  ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  return ::SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS) != FALSE;
}

}  // namespace nhupdate
