#include "update/updater_refresh.h"

#include "update/launch_catalog.h"
#include "update/updater_run.h"

namespace nhupdate {

bool RefreshUpdater(const std::wstring& updater_folder, CFolderCopy& copy, const CLog& log) {
  log.Write(LogLevel::kInformation, L"Begin update updater.");
  const CheckMessages messages = {.found = L"New updater available.",
                                  .nothing_found = L"No new updater available."};
  switch (CheckWithUpdater(kCheckForUpdater, updater_folder, messages, log)) {
    case CheckOutcome::kUpdaterMissing:
      return false;
    case CheckOutcome::kFound:
      if (UpdateWithUpdater(kUpdateUpdater, updater_folder, log) != UpdateOutcome::kDone) {
        return false;
      }
      break;
    case CheckOutcome::kNothingFound:
    case CheckOutcome::kFailed:
      break;  // an updater that was fetched at another time may still wait to be copied
  }
  if (!copy.CopyWithRetries(updater_folder, updater_folder + L"\\NewUpdater", {})) {
    return false;
  }
  log.Write(LogLevel::kInformation, L"Update updater complete.");
  return true;
}

}  // namespace nhupdate
