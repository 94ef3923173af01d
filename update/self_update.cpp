#include <string>

#include "app/manager_center.h"
#include "app/result_code.h"
#include "base/paths.h"
#include "base/program_file_name.h"
#include "base/windows.h"
#include "install/copy_retry.h"
#include "text/string_keys.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"

namespace nhupdate {

namespace {

// The processes that were stopped need a moment until their files are free.
constexpr DWORD kSettleDelayMs = 1000;

constexpr int kSelfCopyAttempts = 3;

}  // namespace

int CManagerCenter::SelfUpdate() {
  Log(LogLevel::kInformation, L"Function : Self Update");
  if (!RequireElevation()) {
    return kNotElevated;
  }
  if (TerminateProcessByName(kProgramFileName) == 0) {
    ShowErrorBox(GetString(kKeyFailNeedStopNHUpdateManager));
    return kNextStageNotReady;
  }
  ::Sleep(kSettleDelayMs);

  // This copy runs from base\Updater\App\NHUpdateManager.
  const std::wstring base_folder = ParentFolder(ParentFolder(ParentFolder(paths_.module_folder)));
  const std::wstring installed_folder = base_folder + L"\\NHUpdateManager";
  if (!CopySelfTo(installed_folder)) {
    ShowErrorBox(GetString(kKeyFailCommonError));
    return kNextStageNotReady;
  }
  return StartInstalledCopy(installed_folder);
}

bool CManagerCenter::CopySelfTo(const std::wstring& installed_folder) {
  // Without a base folder this copy lies in a drive's root or nobody knows where: the folder to be
  // copied would be the whole drive.
  const bool may_copy = !paths_.base_folder.empty();
  for (int attempt = 0; attempt < kSelfCopyAttempts; ++attempt) {
    if (may_copy && CopyFolder(installed_folder, paths_.module_folder, 1, 1, 1) != 0) {
      Log(LogLevel::kInformation, L"Copy NHUpdateManager success.");
      return true;
    }
    Log(LogLevel::kWarning, L"Fail to copy NHUpdateManager, sleep and try again.");
    ::Sleep(kRetryDelayMs);
  }
  Log(LogLevel::kError, L"Fail to copy NHUpdateManager finally.");
  return false;
}

int CManagerCenter::StartInstalledCopy(const std::wstring& installed_folder) {
  const LaunchOutcome next = Launch(kStartFinalUpdate, installed_folder);
  if (next.state == LaunchState::kStarted) {
    return kSucceeded;
  }
  ShowErrorBox(GetString(kKeyFailCommonError));
  return next.state == LaunchState::kMissing ? kNextStageMissing : kNextStageNotReady;
}

}  // namespace nhupdate
