#include "update/nimba_cast_installation.h"

#include <string>
#include <tuple>

#include "base/folder_making.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"
#include "update/result_code.h"

namespace nhupdate {

namespace {

int DownloadNimbaCast(const std::wstring& updater_folder, const CLog& log) {
  const LaunchOutcome download = Launch(kDownloadNimbaCast, updater_folder, log);
  switch (download.state) {
    case LaunchState::kMissing:
      return kNimbaCastUpdaterMissing;
    case LaunchState::kNotLaunched:
      return kNimbaCastDownloadFailed;
    case LaunchState::kLaunched:
      break;
  }
  if (!download.IsSuccess()) {
    log.Write(LogLevel::kError, L"Download failed.");
    return kNimbaCastDownloadFailed;
  }
  if (download.exit_code) {
    log.Write(LogLevel::kInformation, L"Download success.");
  }
  return kSucceeded;
}

int RunNimbaCastManager(const std::wstring& manager_folder, const CLog& log) {
  const LaunchOutcome install = Launch(kInstallNimbaCast, manager_folder, log);
  switch (install.state) {
    case LaunchState::kMissing:
      return kNimbaCastManagerMissing;
    case LaunchState::kNotLaunched:
      return kNimbaCastInstallFailed;
    case LaunchState::kLaunched:
      break;
  }
  if (!install.IsSuccess()) {
    log.Write(LogLevel::kError, L"Install failed.");
    return kNimbaCastInstallFailed;
  }
  if (install.exit_code) {
    log.Write(LogLevel::kInformation, L"Install success.");
  }
  log.Write(LogLevel::kInformation, L"Install NCS end.");
  return kSucceeded;
}

}  // namespace

int InstallNimbaCast(const ProductFolders& folders, CFolderCopy& copy, const CLog& log) {
  log.Write(LogLevel::kInformation, L"Install NCS begin.");
  const std::wstring& nimba_cast = folders.nimba_cast_folder;
  const std::wstring updater_folder = ProductFolders::UpdaterFolderOf(nimba_cast);
  const std::wstring manager_folder = nimba_cast + L"\\CSUpdateManager";
  MakeFolder(nimba_cast);
  MakeFolder(updater_folder);

  if (!copy.Copy(updater_folder, folders.UpdaterFolder(), {})) {
    log.Write(LogLevel::kError, L"Failed to copy NCS updater folder.");
    return kNimbaCastUpdaterMissing;
  }
  const int downloaded = DownloadNimbaCast(updater_folder, log);
  if (downloaded != kSucceeded) {
    return downloaded;
  }
  // A manager that is there already does as well.
  std::ignore = copy.Copy(manager_folder, updater_folder + L"\\App\\CSUpdateManager", {});
  return RunNimbaCastManager(manager_folder, log);
}

}  // namespace nhupdate
