#pragma once

// The places that all work refers to. Most of them follow from where the running executable lies:
//
//   <root>\<base>\NHUpdateManager\NHUpdateManager.exe             the installed copy
//   <root>\<base>\Updater\App\NHUpdateManager\NHUpdateManager.exe the staged copy

#include <string>

namespace nhupdate {

// This program's executable, by which its other copies are found among the processes.
inline constexpr wchar_t kProgramFileName[] = L"NHUpdateManager.exe";

// This program's folder, in a product folder or a staged one.
inline constexpr wchar_t kProgramFolder[] = L"\\NHUpdateManager";

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
  bool is_executable_path_cut_off = false;

  // False when there is no product around the executable, or nobody knows which: it lies in a
  // drive's root, or its path is unknown or cut off. What is built from the base folder would then
  // mean the current drive or a folder too far up, so nothing may be deleted, copied or scanned. A
  // bare drive ("C:") is a base folder.
  [[nodiscard]] bool HasBaseFolder() const {
    return !base_folder.empty() && !is_executable_path_cut_off;
  }

  // Of the installed product.
  [[nodiscard]] std::wstring UpdaterFolder() const { return UpdaterFolderOf(base_folder); }

  // What a staged copy of the program takes for the installed product's folders: it lies three
  // levels below the base folder.
  [[nodiscard]] std::wstring InstalledProgramFolderSeenFromStagedCopy() const;
  [[nodiscard]] std::wstring UpdaterFolderSeenFromStagedCopy() const;

  // Where the updater lies in the folder of a product.
  [[nodiscard]] static std::wstring UpdaterFolderOf(const std::wstring& product_folder) {
    return product_folder + L"\\Updater";
  }
};

// Derives what follows from the executable's full path, which is taken for a whole one. The string
// file and the two data folders are not derived and stay empty. Where the path has too few
// components, folders become empty, and what is below them relative to the current drive.
[[nodiscard]] ProductFolders FoldersOfExecutable(const std::wstring& executable_path);

}  // namespace nhupdate
