#include <optional>
#include <string>

#include "app/manager_center.h"
#include "base/existence.h"
#include "base/paths.h"
#include "base/pinned_folder.h"
#include "base/windows.h"
#include "update/updater_folder.h"

namespace nhupdate {

namespace {

// Everybody may write to the folder of the file, so it could have been exchanged for a link.
// Returns the error, or nothing when the file is deleted.
std::optional<DWORD> DeleteFileBelow(const std::wstring& file, const std::wstring& anchor) {
  const CPinnedFolder folder(ParentFolder(file));
  if (folder.Error()) {
    return folder.Error();
  }
  if (!folder.IsAtOrBelow(anchor)) {
    return ERROR_CANT_ACCESS_FILE;
  }
  if (!::DeleteFileW(file.c_str())) {
    const DWORD error = ::GetLastError();
    return error;
  }
  return std::nullopt;
}

}  // namespace

int CManagerCenter::DeleteUpdaterConfig(int staged) {
  // The staged copy runs from base\Updater\App\NHUpdateManager.
  const std::wstring updater_folder = staged == 0
                                          ? paths_.base_folder + kUpdaterFolder
                                          : ParentFolder(ParentFolder(paths_.module_folder));
  const std::wstring file = updater_folder + L"\\Config\\ut.ini";
  if (!Exists(file)) {
    Log(LogLevel::kError, L"Updater config file note found : %s", file);  // sic
    return 0;
  }
  const std::optional<DWORD> error = DeleteFileBelow(file, updater_folder);
  if (error) {
    Log(LogLevel::kError, L"Updater config file delete fail (%d) : %s", *error, file);
  } else {
    Log(LogLevel::kInformation, L"Updater config file delete ok : %s", file);
  }
  return 1;
}

}  // namespace nhupdate
