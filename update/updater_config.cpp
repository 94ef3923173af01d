#include "update/updater_config.h"

#include <optional>

#include "base/entry_deletion.h"
#include "base/existence.h"
#include "base/folder_place.h"

namespace nhupdate {

bool DeleteUpdaterConfig(const ProductFolders& folders, RunningCopy copy, const CLog& log) {
  const std::wstring updater_folder = copy == RunningCopy::kInstalled
                                          ? folders.UpdaterFolder()
                                          : folders.UpdaterFolderSeenFromStagedCopy();
  const std::wstring file = updater_folder + L"\\Config\\ut.ini";
  if (!folders.HasBaseFolder() || !Exists(file)) {
    log.Write(LogLevel::kError, L"Updater config file note found : %s", file);  // sic
    return false;
  }
  // Everybody may write to its folder, and could put a link to another one in its place.
  const std::optional<DWORD> error =
      DeleteEntry(file, EntryKind::kFile, PlaceSeenFrom(updater_folder, file));
  if (error) {
    log.Write(LogLevel::kError, L"Updater config file delete fail (%d) : %s", *error, file);
  } else {
    log.Write(LogLevel::kInformation, L"Updater config file delete ok : %s", file);
  }
  return true;
}

}  // namespace nhupdate
