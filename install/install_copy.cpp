#include "install/install_copy.h"

#include <vector>

#include "base/existence.h"
#include "base/folder_listing.h"
#include "base/windows.h"
#include "base/windows_path.h"
#include "install/failure_notice.h"
#include "install/folder_copy.h"
#include "text/string_keys.h"

namespace nhupdate {

namespace {

std::vector<std::wstring> FilesIn(const std::wstring& folder) {
  std::vector<std::wstring> files;
  CFolderListing listing(folder);
  while (listing.Next()) {
    if (!listing.IsFolder()) {
      files.push_back(folder + L"\\" + listing.Name());
    }
  }
  return files;
}

// A listing that can't begin or breaks off is no reason to stop, here or for the staged files: the
// folder copy brings what is missing, or fails and is tried again.
bool DeleteInstalledFiles(const std::wstring& base_folder, const StringTable& strings,
                          const CLog& log) {
  for (const std::wstring& file : FilesIn(base_folder)) {
    if (!Exists(file)) {
      continue;
    }
    if (!::DeleteFileW(PathForWindows(file).c_str())) {
      const DWORD error = ::GetLastError();
      log.Write(LogLevel::kError, L"Fail to delete (%d) : %s", error, file);
      TellFailure(strings, kKeyFailCommonError, file);
      return false;
    }
    log.Write(LogLevel::kInformation, L"Delete OK : %s", file);
  }
  return true;
}

bool CopyStagedFiles(const ProductFolders& folders, const StringTable& strings, const CLog& log) {
  CFolderListing listing(folders.app_folder);
  while (listing.Next()) {
    if (listing.IsFolder()) {
      continue;
    }
    const std::wstring source = folders.app_folder + L"\\" + listing.Name();
    const std::wstring target = folders.base_folder + L"\\" + listing.Name();
    if (!::CopyFileW(PathForWindows(source).c_str(), PathForWindows(target).c_str(), FALSE)) {
      const DWORD error = ::GetLastError();
      log.Write(LogLevel::kError, L"Fail to copy (%d) : %s => %s", error, source, target);
      TellFailure(strings, kKeyFailCommonError, target);
      return false;
    }
    log.Write(LogLevel::kInformation, L"Copy OK : %s => %s", source, target);
  }
  return true;
}

}  // namespace

// The top-level files go first, so that no old program file can be started while the rest is being
// replaced, and come back first. That the folder copy brings them once more does no harm.
bool InstallCopy(const ProductFolders& folders, const StringTable& strings, const CLog& log,
                 std::wstring& last_failed_copy_path) {
  if (!folders.HasBaseFolder()) {
    return true;
  }
  if (!DeleteInstalledFiles(folders.base_folder, strings, log) ||
      !CopyStagedFiles(folders, strings, log)) {
    return false;
  }
  CFolderCopy copy(folders, log, last_failed_copy_path);
  const bool is_copied = copy.CopyWithRetries(folders.base_folder, folders.app_folder,
                                              {.delete_existing_sub_folders = true});
  if (!is_copied) {
    TellFailure(strings, kKeyFailCommonError, last_failed_copy_path);
  }
  return is_copied;
}

}  // namespace nhupdate
