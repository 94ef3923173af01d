#include "app/process_setup.h"

#include <tuple>

#include "base/windows.h"

namespace nhupdate {

bool SetUpProcess() {
  std::ignore = ::SetErrorMode(::GetErrorMode() | SEM_FAILCRITICALERRORS |
                               SEM_NOOPENFILEERRORBOX);  // old mode
  return ::SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS) != FALSE;
}

}  // namespace nhupdate
