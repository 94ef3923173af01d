#include "app/manager_center.h"
#include "update/elevation_requirement.h"
#include "update/result_code.h"

namespace nhupdate {

int CManagerCenter::FinalUpdate() {
  const CLog log = Records();
  log.Write(LogLevel::kInformation, L"Function : Final Update");
  if (!RequireElevation(IsElevated(), log)) {
    return kNotElevated;
  }
  return InstallSequence(InstallKind::kLastUpdateStage);
}

}  // namespace nhupdate
