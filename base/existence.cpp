#include "base/existence.h"

#include <io.h>

#include "base/windows_path.h"

namespace nhupdate {

bool Exists(const std::wstring& path) {
  constexpr int kExistenceOnly = 0;
  return _waccess(PathForWindows(path).c_str(), kExistenceOnly) == 0;
}

}  // namespace nhupdate
