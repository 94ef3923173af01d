#include <tuple>

#include "app/manager_center.h"
#include "base/product_folders.h"
#include "install/failure_notice.h"
#include "install/folder_copy.h"
#include "text/string_keys.h"
#include "update/child_launch.h"
#include "update/elevation_requirement.h"
#include "update/launch_catalog.h"
#include "update/result_code.h"
#include "update/updater_refresh.h"
#include "update/updater_run.h"

namespace nhupdate {

int CManagerCenter::Update() {
  const CLog log = Records();
  log.Write(LogLevel::kInformation, L"Function : Update");
  if (!RequireElevation(IsElevated(), log)) {
    return kNotElevated;
  }
  CFolderCopy copy(paths_, log, last_failed_copy_path_);
  // The updater that is there can do the update as well.
  std::ignore = RefreshUpdater(paths_.UpdaterFolder(), copy, log);

  switch (UpdateWithUpdater(kUpdateProduct, paths_.UpdaterFolder(), log)) {
    case UpdateOutcome::kUpdaterMissing:
      return kUpdaterNotLaunched;
    case UpdateOutcome::kNotLaunched:
      TellFailure(strings_, kKeyFailCommonError);
      return kUpdaterNotLaunched;
    case UpdateOutcome::kFailed:
      TellFailure(strings_, kKeyFailCommonError);
      return kUpdaterFailed;
    case UpdateOutcome::kDone:
      break;
  }

  switch (Launch(kStartSelfUpdate, paths_.app_folder + kProgramFolder, log).state) {
    case LaunchState::kMissing:
      return kNextStageMissing;
    case LaunchState::kNotLaunched:
      TellFailure(strings_, kKeyFailCommonError);
      return kNextStageNotReady;
    case LaunchState::kLaunched:
      break;
  }
  return kSucceeded;
}

}  // namespace nhupdate
