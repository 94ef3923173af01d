#include <string>

#include "app/manager_center.h"
#include "base/product_folders.h"
#include "base/windows.h"
#include "install/failure_notice.h"
#include "install/folder_copy.h"
#include "install/process_stop.h"
#include "text/string_keys.h"
#include "update/child_launch.h"
#include "update/elevation_requirement.h"
#include "update/launch_catalog.h"
#include "update/result_code.h"

namespace nhupdate {

namespace {

// The processes that were stopped need a moment until their files are free.
constexpr DWORD kSettleDelayMs = 1000;

constexpr int kSelfCopyAttempts = 3;

// Without a base folder the folder to be copied would be a whole drive, or nobody knows which.
bool CopySelf(const ProductFolders& folders, const std::wstring& installed_folder,
              CFolderCopy& copy, const CLog& log) {
  for (int attempt = 0; attempt < kSelfCopyAttempts; ++attempt) {
    if (folders.HasBaseFolder() &&
        copy.Copy(installed_folder, folders.module_folder, {.delete_existing_sub_folders = true})) {
      log.Write(LogLevel::kInformation, L"Copy NHUpdateManager success.");
      return true;
    }
    log.Write(LogLevel::kWarning, L"Fail to copy NHUpdateManager, sleep and try again.");
    ::Sleep(kCopyRetryDelayMs);
  }
  log.Write(LogLevel::kError, L"Fail to copy NHUpdateManager finally.");
  return false;
}

}  // namespace

int CManagerCenter::SelfUpdate() {
  const CLog log = Records();
  log.Write(LogLevel::kInformation, L"Function : Self Update");
  if (!RequireElevation(IsElevated(), log)) {
    return kNotElevated;
  }
  if (!nhupdate::TerminateProcessByName(kProgramFileName, log)) {
    TellFailure(strings_, kKeyFailNeedStopNHUpdateManager);
    return kNextStageNotReady;
  }
  ::Sleep(kSettleDelayMs);

  const std::wstring installed_folder = paths_.InstalledProgramFolderSeenFromStagedCopy();
  CFolderCopy copy(paths_, log, last_failed_copy_path_);
  if (!CopySelf(paths_, installed_folder, copy, log)) {
    TellFailure(strings_, kKeyFailCommonError);
    return kNextStageNotReady;
  }

  switch (Launch(kStartFinalUpdate, installed_folder, log).state) {
    case LaunchState::kMissing:
      TellFailure(strings_, kKeyFailCommonError);
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
