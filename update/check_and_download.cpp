#include <string>
#include <tuple>

#include "app/manager_center.h"
#include "app/result_code.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"
#include "update/product_version.h"
#include "update/updater_folder.h"
#include "update/updater_run.h"

namespace nhupdate {

namespace {

int ResultOf(CheckOutcome outcome) {
  switch (outcome) {
    case CheckOutcome::kUpdaterMissing:
      return kCheckUpdaterMissing;
    case CheckOutcome::kFound:
      return kUpdateFound;
    case CheckOutcome::kNothingFound:
      return kNoUpdateAvailable;
    case CheckOutcome::kFailed:
      break;
  }
  return kCheckFailed;
}

}  // namespace

int CManagerCenter::CheckAndDownload() {
  Log(LogLevel::kInformation, L"Function : Check and background download");
  const std::wstring updater_folder = paths_.base_folder + kUpdaterFolder;
  int result = ResultOf(CheckWithUpdater(kCheckForUpdate, updater_folder, L"New update available.",
                                         L"No update available."));
  if (result == kCheckUpdaterMissing) {
    return result;
  }
  // An updater that found nothing, or failed, may have staged a new version at another time.
  if (result != kUpdateFound && StagedVersionDiffers()) {
    result = kUpdateFound;
  }
  if (result != kUpdateFound) {
    Log(LogLevel::kInformation, L"Skip background download due to no update or error.");
    return result;
  }
  Log(LogLevel::kInformation, L"Begin background download.");
  std::ignore = Launch(kBackgroundDownload, updater_folder);  // something is new in any case
  return result;
}

bool CManagerCenter::StagedVersionDiffers() {
  const std::wstring installed = ReadProductVersion(paths_.base_folder);
  const std::wstring staged = ReadProductVersion(paths_.app_folder);
  if (installed == staged) {
    Log(LogLevel::kInformation, L"Version match between installed and app folder : %s", installed);
    return false;
  }
  Log(LogLevel::kInformation, L"Version mismatch between installed (%s) and app folder (%s).",
      installed, staged);
  return true;
}

}  // namespace nhupdate
