#include <string>
#include <vector>

#include "app/manager_center.h"
#include "base/existence.h"
#include "base/folder_listing.h"
#include "base/windows.h"
#include "text/string_keys.h"

namespace nhupdate {

namespace {

std::vector<std::wstring> FilesIn(const std::wstring& folder) {
  std::vector<std::wstring> files;
  CFolderListing listing(folder + kAllEntries);
  while (listing.Next()) {
    if (!listing.IsFolder()) {
      files.push_back(folder + L"\\" + listing.Name());
    }
  }
  return files;
}

}  // namespace

// The top-level files go first, so that no old program file can be started while the rest is being
// replaced, and come back first. That the folder copy brings them once more does no harm.
int CManagerCenter::InstallCopy() {
  if (DeleteInstalledFiles() == 0 || CopyStagedFiles() == 0) {
    return 0;
  }
  if (CopyFolderWithRetries(paths_.base_folder, paths_.app_folder, 1) == 0) {
    ShowCopyErrorBox(last_failed_copy_path_);
    return 0;
  }
  return 1;
}

// A listing that can't begin or breaks off is no reason to stop, here or for the staged files: the
// folder copy brings what is missing, or fails and is tried again.
int CManagerCenter::DeleteInstalledFiles() {
  // Without a base folder there is nothing installed; the listing would be of the drive's root.
  if (paths_.base_folder.empty()) {
    return 1;
  }
  for (const std::wstring& file : FilesIn(paths_.base_folder)) {
    if (!Exists(file)) {
      continue;
    }
    if (!::DeleteFileW(file.c_str())) {
      const DWORD error = ::GetLastError();
      Log(LogLevel::kError, L"Fail to delete (%d) : %s", error, file);
      ShowCopyErrorBox(file);
      return 0;
    }
    Log(LogLevel::kInformation, L"Delete OK : %s", file);
  }
  return 1;
}

int CManagerCenter::CopyStagedFiles() {
  CFolderListing listing(paths_.app_folder + kAllEntries);
  while (listing.Next()) {
    if (listing.IsFolder()) {
      continue;
    }
    const std::wstring source = paths_.app_folder + L"\\" + listing.Name();
    const std::wstring target = paths_.base_folder + L"\\" + listing.Name();
    if (!::CopyFileW(source.c_str(), target.c_str(), FALSE)) {
      const DWORD error = ::GetLastError();
      Log(LogLevel::kError, L"Fail to copy (%d) : %s => %s", error, source, target);
      ShowCopyErrorBox(target);
      return 0;
    }
    Log(LogLevel::kInformation, L"Copy OK : %s => %s", source, target);
  }
  return 1;
}

void CManagerCenter::ShowCopyErrorBox(const std::wstring& path) const {
  ShowErrorBox(GetString(kKeyFailCommonError) + L"\n" + path);
}

}  // namespace nhupdate
