#include "app/manager_center.h"

#include <optional>
#include <tuple>

#include "app/elevation.h"
#include "base/executable_path.h"
#include "base/folder_making.h"
#include "base/folder_place.h"
#include "base/known_folder.h"
#include "base/windows.h"
#include "install/empty_folders.h"
#include "install/folder_access.h"
#include "install/folder_copy.h"
#include "install/folder_removal.h"
#include "install/install_copy.h"
#include "install/process_image.h"
#include "install/process_stop.h"
#include "install/registration.h"
#include "text/language_selection.h"
#include "text/string_file.h"
#include "update/updater_config.h"

#include <objbase.h>  // needs <windows.h> first

namespace nhupdate {

CManagerCenter::CManagerCenter() {
  ::CoInitialize(nullptr);  // only some shell calls profit from COM
}

CManagerCenter::~CManagerCenter() {
  ::CoUninitialize();
}

int CManagerCenter::Initialize() {
  const ExecutablePath executable = FindExecutable();
  paths_ = FoldersOfExecutable(executable.path);
  paths_.is_executable_path_cut_off = executable.is_cut_off;
  PrepareDataFolders();

  // Without a log the program works on in silence; the console has been told.
  std::ignore = log_center_.StartLog(paths_.module_folder + L"\\NSWLogDynamic64U.dll",
                                     paths_.module_folder + L"\\LogConfig.ini", paths_.log_folder);

  elevated_ = IsProcessElevated() ? 1 : 0;
  if (IsElevated()) {
    Log(LogLevel::kInformation, L"Process elevated.");
  } else {
    Log(LogLevel::kInformation, L"Process NOT elevated.");
  }

  const std::wstring language = SelectLanguage();
  paths_.string_file_path = ChooseStringFile(paths_.configuration_folder, language);
  LoadStrings(paths_.string_file_path);
  return 0;
}

void CManagerCenter::PrepareDataFolders() {
  const std::optional<std::wstring> program_data = ProgramDataFolder();
  if (!program_data) {
    return;
  }
  std::wstring folder = *program_data;
  for (const wchar_t* name : {L"\\Corvane", L"\\NimbaSoftware", L"\\NimbaHub"}) {
    folder += name;
    const bool is_there = MakeFolder(folder);
    // Every user may make these folders, and could have put a link there instead. Behind it nothing
    // is made: it is as if there were no ProgramData.
    const UniqueFile opened = LookAtItself(folder);
    const CPlace place = PlaceSeenFrom(*program_data, folder);
    if (is_there && !(IsPlainFolder(opened) && CPlace(opened).IsSameAs(place))) {
      return;
    }
  }
  paths_.product_data_folder = folder;
  paths_.log_folder = folder + L"\\Log";
  MakeFolder(paths_.log_folder);
}

void CManagerCenter::EndLog() {
  log_center_.StopLog();
  log_center_.UnloadLogLibrary();
}

int CManagerCenter::DeleteUpdaterConfig(int staged) {
  const RunningCopy copy = staged == 0 ? RunningCopy::kInstalled : RunningCopy::kStaged;
  return nhupdate::DeleteUpdaterConfig(paths_, copy, Records()) ? 1 : 0;
}

void CManagerCenter::LoadStrings(const std::wstring& path) {
  nhupdate::LoadStrings(strings_, path, Records());
}

std::wstring CManagerCenter::GetString(const std::wstring& key) const {
  return nhupdate::GetString(strings_, key);
}

std::wstring CManagerCenter::SelectLanguage() {
  return nhupdate::SelectLanguage(paths_.configuration_folder, Records());
}

int CManagerCenter::GetProcessImageName(unsigned long process_id, std::wstring& name,
                                        std::wstring& path) {
  return nhupdate::GetProcessImageName(process_id, name, path) ? 1 : 0;
}

int CManagerCenter::TerminateProcessByName(const std::wstring& file_name) {
  return nhupdate::TerminateProcessByName(file_name, Records()) ? 1 : 0;
}

int CManagerCenter::StopUpdateManagers() {
  return nhupdate::StopUpdateManagers(strings_, Records()) ? 1 : 0;
}

int CManagerCenter::CopyFolder(const std::wstring& destination, const std::wstring& source,
                               int recurse, int log_details, int delete_existing) {
  CFolderCopy copy(paths_, Records(), last_failed_copy_path_);
  const CopyOptions options = {.recurse = recurse != 0,
                               .log_details = log_details != 0,
                               .delete_existing_sub_folders = delete_existing != 0};
  return copy.Copy(destination, source, options) ? 1 : 0;
}

int CManagerCenter::InstallCopy() {
  return nhupdate::InstallCopy(paths_, strings_, Records(), last_failed_copy_path_) ? 1 : 0;
}

int CManagerCenter::CollectEmptyFolders(const std::wstring& folder) {
  return nhupdate::CollectEmptyFolders(folder, folders_to_remove_, Records()) ? 1 : 0;
}

int CManagerCenter::DeleteFolderTree(const std::wstring& folder) {
  return nhupdate::DeleteFolderTree(folder, paths_.base_folder) ? 1 : 0;
}

int CManagerCenter::RegisterProduct() {
  return nhupdate::RegisterProduct(paths_, Records()) ? 1 : 0;
}

void CManagerCenter::GrantFolderAccess() {
  nhupdate::GrantFolderAccess(paths_, Records());
}

}  // namespace nhupdate
