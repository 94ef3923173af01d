#include <string>

#include "app/manager_center.h"
#include "base/existence.h"
#include "base/paths.h"
#include "base/windows.h"
#include "update/updater_folder.h"

namespace nhupdate {

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
  if (::DeleteFileW(file.c_str())) {
    Log(LogLevel::kInformation, L"Updater config file delete ok : %s", file);
  } else {
    const DWORD error = ::GetLastError();
    Log(LogLevel::kError, L"Updater config file delete fail (%d) : %s", error, file);
  }
  return 1;
}

}  // namespace nhupdate
