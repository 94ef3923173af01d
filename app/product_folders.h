#pragma once

// The places that all work refers to. Most of them follow from where the running executable lies:
//
//   <root>\<base>\NHUpdateManager\NHUpdateManager.exe

#include <string>

namespace nhupdate {

// All paths are without a trailing backslash.
struct ProductFolders {
  std::wstring module_file_name;      // of the running executable
  std::wstring module_folder;         // that holds the running executable
  std::wstring configuration_folder;  // string files and language mapping
  std::wstring string_file_path;
  std::wstring base_folder;  // the installed product
  std::wstring app_folder;   // where the updater stages a new version
  std::wstring product_data_folder;
  std::wstring log_folder;
  std::wstring root_folder;  // all products of the maker
  std::wstring nimba_cast_folder;
  std::wstring nimba_desk_folder;
};

// Derives what follows from the executable's full path. The string file and the two data folders
// are not derived and stay empty. Where the path has too few components, folders become empty, and
// what is below them relative to the current drive.
[[nodiscard]] ProductFolders FoldersOfExecutable(const std::wstring& executable_path);

}  // namespace nhupdate
