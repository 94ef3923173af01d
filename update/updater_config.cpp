#include "update/updater_config.h"

#include <optional>

#include "base/existence.h"
#include "base/held_folder.h"
#include "base/paths.h"
#include "base/windows.h"

namespace nhupdate {

namespace {

// Everybody may write to the folder of the file, so it could have been exchanged for a link.
// Returns the error, or nothing when the file is deleted.
std::optional<DWORD> DeleteFileBelow(const std::wstring& file, const std::wstring& anchor) {
  const CHeldFolder folder(ParentFolder(file));
  if (folder.Error()) {
    return folder.Error();
  }
  if (!folder.IsPlainWithin(anchor)) {
    return ERROR_CANT_ACCESS_FILE;
  }
  if (!::DeleteFileW(file.c_str())) {
    const DWORD error = ::GetLastError();
    return error;
  }
  return std::nullopt;
}

}  // namespace

bool DeleteUpdaterConfig(const std::wstring& updater_folder, const CLog& log) {
  const std::wstring file = updater_folder + L"\\Config\\ut.ini";
  if (!Exists(file)) {
    log.Write(LogLevel::kError, L"Updater config file note found : %s", file);  // sic
    return false;
  }
  const std::optional<DWORD> error = DeleteFileBelow(file, updater_folder);
  if (error) {
    log.Write(LogLevel::kError, L"Updater config file delete fail (%d) : %s", *error, file);
  } else {
    log.Write(LogLevel::kInformation, L"Updater config file delete ok : %s", file);
  }
  return true;
}

}  // namespace nhupdate
