#include <string>
#include <tuple>

#include "app/manager_center.h"
#include "app/result_code.h"
#include "base/windows.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"
#include "update/updater_folder.h"

namespace nhupdate {

int CManagerCenter::InstallNimbaCast() {
  Log(LogLevel::kInformation, L"Install NCS begin.");
  const std::wstring& nimba_cast = paths_.nimba_cast_folder;
  const std::wstring updater_folder = nimba_cast + kUpdaterFolder;
  const std::wstring manager_folder = nimba_cast + L"\\CSUpdateManager";
  std::ignore = ::CreateDirectoryW(nimba_cast.c_str(), nullptr);      // may be there already
  std::ignore = ::CreateDirectoryW(updater_folder.c_str(), nullptr);  // may be there already

  if (CopyFolder(updater_folder, paths_.base_folder + kUpdaterFolder, 1, 1, 0) == 0) {
    Log(LogLevel::kError, L"Failed to copy NCS updater folder.");
    return kNimbaCastUpdaterMissing;
  }
  const int downloaded = DownloadNimbaCast(updater_folder);
  if (downloaded != kSucceeded) {
    return downloaded;
  }
  // A manager that is there already does as well.
  std::ignore = CopyFolder(manager_folder, updater_folder + L"\\App\\CSUpdateManager", 1, 1, 0);
  return RunNimbaCastManager(manager_folder);
}

int CManagerCenter::DownloadNimbaCast(const std::wstring& updater_folder) {
  const LaunchOutcome download = Launch(kDownloadNimbaCast, updater_folder);
  if (download.state == LaunchState::kMissing) {
    return kNimbaCastUpdaterMissing;
  }
  if (download.state == LaunchState::kFailed) {
    return kNimbaCastDownloadFailed;
  }
  if (!download.exit_code) {
    return kSucceeded;
  }
  if (*download.exit_code != 0) {
    Log(LogLevel::kError, L"Download failed.");
    return kNimbaCastDownloadFailed;
  }
  Log(LogLevel::kInformation, L"Download success.");
  return kSucceeded;
}

int CManagerCenter::RunNimbaCastManager(const std::wstring& manager_folder) {
  const LaunchOutcome install = Launch(kInstallNimbaCast, manager_folder);
  if (install.state == LaunchState::kMissing) {
    return kNimbaCastManagerMissing;
  }
  if (install.state == LaunchState::kFailed) {
    return kNimbaCastInstallFailed;
  }
  if (install.exit_code) {
    if (*install.exit_code != 0) {
      Log(LogLevel::kError, L"Install failed.");
      return kNimbaCastInstallFailed;
    }
    Log(LogLevel::kInformation, L"Install success.");
  }
  Log(LogLevel::kInformation, L"Install NCS end.");
  return kSucceeded;
}

}  // namespace nhupdate
