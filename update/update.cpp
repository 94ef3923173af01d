#include <tuple>

#include "app/manager_center.h"
#include "app/result_code.h"
#include "text/string_keys.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"
#include "update/updater_folder.h"
#include "update/updater_run.h"

namespace nhupdate {

int CManagerCenter::Update() {
  Log(LogLevel::kInformation, L"Function : Update");
  if (!RequireElevation()) {
    return kNotElevated;
  }
  std::ignore = RefreshUpdater();  // the updater that is there can do the update as well

  switch (UpdateWithUpdater(kUpdateProduct, paths_.base_folder + kUpdaterFolder)) {
    case UpdateOutcome::kUpdaterMissing:
      return kUpdaterNotLaunched;
    case UpdateOutcome::kNotLaunched:
      ShowErrorBox(GetString(kKeyFailCommonError));
      return kUpdaterNotLaunched;
    case UpdateOutcome::kFailed:
      ShowErrorBox(GetString(kKeyFailCommonError));
      return kUpdaterFailed;
    case UpdateOutcome::kDone:
      break;
  }

  switch (Launch(kStartSelfUpdate, paths_.app_folder + L"\\NHUpdateManager").state) {
    case LaunchState::kMissing:
      return kNextStageMissing;
    case LaunchState::kFailed:
      ShowErrorBox(GetString(kKeyFailCommonError));
      return kNextStageNotReady;
    case LaunchState::kStarted:
      break;
  }
  return kSucceeded;
}

}  // namespace nhupdate
