#include "base/product_folders.h"

#include "base/paths.h"

namespace nhupdate {

std::wstring ProductFolders::InstalledProgramFolderSeenFromStagedCopy() const {
  return ParentFolder(UpdaterFolderSeenFromStagedCopy()) + kProgramFolder;
}

std::wstring ProductFolders::UpdaterFolderSeenFromStagedCopy() const {
  return ParentFolder(ParentFolder(module_folder));
}

ProductFolders FoldersOfExecutable(const std::wstring& executable_path) {
  ProductFolders folders;
  folders.module_file_name = FileName(executable_path);
  folders.module_folder = ParentFolder(executable_path);
  folders.base_folder = ParentFolder(folders.module_folder);
  folders.app_folder = folders.UpdaterFolder() + L"\\App";
  folders.configuration_folder = folders.module_folder + L"\\Config";
  folders.root_folder = ParentFolder(folders.base_folder);
  folders.nimba_cast_folder = folders.root_folder + L"\\NimbaCast";
  folders.nimba_desk_folder = folders.root_folder + L"\\NimbaDesk";
  return folders;
}

}  // namespace nhupdate
