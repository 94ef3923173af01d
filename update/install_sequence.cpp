#include <string>
#include <tuple>
#include <vector>

#include "app/manager_center.h"
#include "app/result_code.h"

namespace nhupdate {

int CManagerCenter::InstallSequence(int final_update) {
  if (final_update == 0) {
    Log(LogLevel::kInformation, L"Function : Install");
    if (!RequireElevation()) {
      return kNotElevated;
    }
  }

  int result = kSucceeded;
  if (StopUpdateManagers() != 0) {
    Log(LogLevel::kInformation, L"Stop associates OK.");
  } else {
    Log(LogLevel::kError, L"Fail to stop associates.");
    result = kProcessesNotStopped;
  }
  if (IsElevated()) {
    GrantFolderAccess();
  }
  if (result == kSucceeded) {
    result = PutIntoPlace();
  }

  if (final_update != 0) {
    RemoveEmptyFolders();
    return result;
  }
  std::ignore = InstallNimbaCast();  // this product works without its sibling
  Log(LogLevel::kInformation, L"Install ND begin.");
  Log(LogLevel::kInformation, L"Install ND end.");
  return result;
}

int CManagerCenter::PutIntoPlace() {
  if (InstallCopy() == 0) {
    Log(LogLevel::kError, L"Fail to copy files.");
    return kFilesNotCopied;
  }
  Log(LogLevel::kInformation, L"Copy files OK.");
  if (RegisterProduct() == 0) {
    Log(LogLevel::kError, L"Fail to update registry.");
    return kRegistryNotUpdated;
  }
  Log(LogLevel::kInformation, L"Update registry OK.");
  return kSucceeded;
}

void CManagerCenter::RemoveEmptyFolders() {
  Log(LogLevel::kInformation, L"Remove empty folder in path : %s", paths_.base_folder);
  // Without a base folder the scan would be one of the whole drive.
  if (!paths_.base_folder.empty()) {
    std::ignore = CollectEmptyFolders(paths_.base_folder);  // the base folder itself stays
  }
  for (const std::wstring& folder : folders_to_remove_) {
    std::ignore = DeleteFolderTree(folder);  // an empty folder that stays does no harm
  }
  std::vector<std::wstring>().swap(folders_to_remove_);
}

}  // namespace nhupdate
