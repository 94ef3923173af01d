#include <string>
#include <tuple>

#include "app/manager_center.h"
#include "base/product_folders.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"
#include "update/product_version.h"
#include "update/result_code.h"
#include "update/updater_run.h"

namespace nhupdate {

namespace {

bool StagedVersionDiffers(const ProductFolders& folders, const CLog& log) {
  const std::wstring installed = ReadProductVersion(folders.base_folder);
  const std::wstring staged = ReadProductVersion(folders.app_folder);
  if (installed == staged) {
    log.Write(LogLevel::kInformation, L"Version match between installed and app folder : %s",
              installed);
    return false;
  }
  log.Write(LogLevel::kInformation, L"Version mismatch between installed (%s) and app folder (%s).",
            installed, staged);
  return true;
}

// What the workflow ends with when there turns out to be nothing new.
int ResultWithoutUpdate(CheckOutcome check) {
  return check == CheckOutcome::kNothingFound ? kNoUpdateAvailable : kCheckFailed;
}

}  // namespace

int CManagerCenter::CheckAndDownload() {
  const CLog log = Records();
  log.Write(LogLevel::kInformation, L"Function : Check and background download");
  const CheckMessages messages = {.found = L"New update available.",
                                  .nothing_found = L"No update available."};
  const CheckOutcome check =
      CheckWithUpdater(kCheckForUpdate, paths_.UpdaterFolder(), messages, log);
  if (check == CheckOutcome::kUpdaterMissing) {
    return kCheckUpdaterMissing;
  }
  // An updater that found nothing, or failed, may have staged a new version at another time.
  if (check != CheckOutcome::kFound && !StagedVersionDiffers(paths_, log)) {
    log.Write(LogLevel::kInformation, L"Skip background download due to no update or error.");
    return ResultWithoutUpdate(check);
  }
  log.Write(LogLevel::kInformation, L"Begin background download.");
  // There is something new, whether or not it can be fetched now.
  std::ignore = Launch(kBackgroundDownload, paths_.UpdaterFolder(), log);
  return kUpdateFound;
}

}  // namespace nhupdate
