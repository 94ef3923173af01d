#include <string>

#include "app/manager_center.h"
#include "update/launch_catalog.h"
#include "update/updater_folder.h"
#include "update/updater_run.h"

namespace nhupdate {

int CManagerCenter::RefreshUpdater() {
  Log(LogLevel::kInformation, L"Begin update updater.");
  const std::wstring updater_folder = paths_.base_folder + kUpdaterFolder;
  switch (CheckWithUpdater(kCheckForUpdater, updater_folder, L"New updater available.",
                           L"No new updater available.")) {
    case CheckOutcome::kUpdaterMissing:
      return 0;
    case CheckOutcome::kFound:
      if (UpdateWithUpdater(kUpdateUpdater, updater_folder) != UpdateOutcome::kDone) {
        return 0;
      }
      break;
    case CheckOutcome::kNothingFound:
    case CheckOutcome::kFailed:
      break;  // an updater that was fetched at another time may still wait to be copied
  }
  if (CopyFolderWithRetries(updater_folder, updater_folder + L"\\NewUpdater", 0) == 0) {
    return 0;
  }
  Log(LogLevel::kInformation, L"Update updater complete.");
  return 1;
}

}  // namespace nhupdate
