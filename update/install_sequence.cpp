#include <string>
#include <tuple>
#include <vector>

#include "app/manager_center.h"
#include "base/product_folders.h"
#include "install/empty_folders.h"
#include "install/folder_access.h"
#include "install/folder_copy.h"
#include "install/folder_removal.h"
#include "install/install_copy.h"
#include "install/process_stop.h"
#include "install/registration.h"
#include "update/elevation_requirement.h"
#include "update/nimba_cast_installation.h"
#include "update/result_code.h"

namespace nhupdate {

namespace {

int PutIntoPlace(const ProductFolders& folders, const StringTable& strings, const CLog& log,
                 std::wstring& last_failed_copy_path) {
  if (!InstallCopy(folders, strings, log, last_failed_copy_path)) {
    log.Write(LogLevel::kError, L"Fail to copy files.");
    return kFilesNotCopied;
  }
  log.Write(LogLevel::kInformation, L"Copy files OK.");
  if (!RegisterProduct(folders, log)) {
    log.Write(LogLevel::kError, L"Fail to update registry.");
    return kRegistryNotUpdated;
  }
  log.Write(LogLevel::kInformation, L"Update registry OK.");
  return kSucceeded;
}

void RemoveEmptyFolders(const ProductFolders& folders, std::vector<std::wstring>& to_remove,
                        const CLog& log) {
  log.Write(LogLevel::kInformation, L"Remove empty folder in path : %s", folders.base_folder);
  // Without a base folder the scan would be one of the whole drive.
  if (folders.HasBaseFolder()) {
    // The base folder itself stays, also when it is empty.
    std::ignore = CollectEmptyFolders(folders.base_folder, to_remove, log);
  }
  CFolderRemoval removal(folders.base_folder);
  for (const std::wstring& folder : to_remove) {
    // An empty folder that stays does no harm.
    std::ignore = removal.Delete(folder);
  }
  std::vector<std::wstring>().swap(to_remove);  // gives the memory back, too
}

}  // namespace

int CManagerCenter::InstallSequence(InstallKind kind) {
  const CLog log = Records();
  if (kind == InstallKind::kInstallation) {
    log.Write(LogLevel::kInformation, L"Function : Install");
    if (!RequireElevation(IsElevated(), log)) {
      return kNotElevated;
    }
  }

  int result = kSucceeded;
  if (nhupdate::StopUpdateManagers(strings_, log)) {
    log.Write(LogLevel::kInformation, L"Stop associates OK.");
  } else {
    log.Write(LogLevel::kError, L"Fail to stop associates.");
    result = kProcessesNotStopped;
  }
  if (IsElevated()) {
    nhupdate::GrantFolderAccess(paths_, log);
  }
  if (result == kSucceeded) {
    result = PutIntoPlace(paths_, strings_, log, last_failed_copy_path_);
  }

  if (kind == InstallKind::kLastUpdateStage) {
    RemoveEmptyFolders(paths_, folders_to_remove_, log);
    return result;
  }
  CFolderCopy copy(paths_, log, last_failed_copy_path_);
  std::ignore = InstallNimbaCast(paths_, copy, log);  // this product works without its sibling
  log.Write(LogLevel::kInformation, L"Install ND begin.");
  log.Write(LogLevel::kInformation, L"Install ND end.");
  return result;
}

}  // namespace nhupdate
