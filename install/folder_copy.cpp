#include <string>
#include <tuple>

#include "app/manager_center.h"
#include "base/folder_listing.h"
#include "base/paths.h"
#include "base/pinned_folder.h"
#include "base/windows.h"
#include "install/copy_retry.h"

namespace nhupdate {

namespace {

// The texts alone could only say yes for certain: one folder can go by many names.
bool MayHold(const std::wstring& folder, const std::wstring& path) {
  return IsSameOrInside(path, folder) || CPinnedFolder(folder).MayHold(path);
}

}  // namespace

int CManagerCenter::CopyFolder(const std::wstring& destination, const std::wstring& source,
                               int recurse, int log_details, int delete_existing) {
  if (log_details != 0) {
    LogText(LogLevel::kInformation, L"Copy folder from " + source + L" to " + destination);
  }
  std::ignore = ::CreateDirectoryW(destination.c_str(), nullptr);  // usually there already

  CFolderListing listing(source + kAllEntries);
  while (listing.Next()) {
    const std::wstring entry = source + L"\\" + listing.Name();
    const std::wstring target = destination + L"\\" + listing.Name();
    const int copied = !listing.IsFolder() ? CopyOneFile(target, entry, log_details)
                       : recurse != 0 ? CopySubFolder(target, entry, log_details, delete_existing)
                                      : 1;
    if (copied == 0) {
      return 0;
    }
  }
  if (listing.Error()) {
    // What wasn't seen wasn't copied either.
    if (log_details != 0) {
      Log(LogLevel::kError, L"Fail to copy file = %d", *listing.Error());
    }
    last_failed_copy_path_ = destination;
    return 0;
  }
  return 1;
}

int CManagerCenter::CopyFolderWithRetries(const std::wstring& destination,
                                          const std::wstring& source, int delete_existing) {
  for (int attempt = 0; attempt < kCopyAttempts; ++attempt) {
    if (CopyFolder(destination, source, 1, 1, delete_existing) != 0) {
      Log(LogLevel::kInformation, L"Copy complete.");
      return 1;
    }
    Log(LogLevel::kWarning, L"Copy fail, sleep 3 seconds and retry.");
    ::Sleep(kRetryDelayMs);
  }
  Log(LogLevel::kError, L"Fail to copy folder.");
  return 0;
}

int CManagerCenter::CopyOneFile(const std::wstring& target, const std::wstring& source,
                                int log_details) {
  if (log_details != 0) {
    LogText(LogLevel::kInformation, L"Copy file from " + source + L" to " + target);
  }
  if (::CopyFileW(source.c_str(), target.c_str(), FALSE)) {
    return 1;
  }
  const DWORD error = ::GetLastError();
  if (log_details != 0) {
    Log(LogLevel::kError, L"Fail to copy file = %d", error);
  }
  last_failed_copy_path_ = target;
  return 0;
}

int CManagerCenter::CopySubFolder(const std::wstring& target, const std::wstring& source,
                                  int log_details, int delete_existing) {
  // The program that is running can't replace itself; an earlier stage has done that.
  if (target == paths_.module_folder) {
    return 1;
  }
  // What is to be copied must not be deleted with the folder that it lies in.
  if (delete_existing != 0 && !MayHold(target, source)) {
    if (log_details != 0) {
      LogText(LogLevel::kInformation, L"Delete Dir : " + target);
    }
    std::ignore = DeleteFolderTree(target);  // what stays is copied over
  }
  return CopyFolder(target, source, 1, log_details, 0);
}

}  // namespace nhupdate
