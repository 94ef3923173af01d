#include "update/elevation_requirement.h"

namespace nhupdate {

bool RequireElevation(bool is_elevated, const CLog& log) {
  if (!is_elevated) {
    log.Write(LogLevel::kError, L"Process not been elevated for install.");  // sic
  }
  return is_elevated;
}

}  // namespace nhupdate
