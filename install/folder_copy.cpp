#include "install/folder_copy.h"

#include <tuple>

#include "base/folder_listing.h"
#include "base/held_folder.h"
#include "base/paths.h"
#include "base/windows.h"
#include "install/folder_removal.h"

namespace nhupdate {

namespace {

constexpr int kCopyAttempts = 10;

// The texts alone could only say yes for certain: one folder can go by many names.
bool MayHold(const std::wstring& folder, const std::wstring& path) {
  return IsSameOrInside(path, folder) || CHeldFolder(folder).MayHold(path);
}

}  // namespace

bool CFolderCopy::Copy(const std::wstring& destination, const std::wstring& source,
                       const CopyOptions& options) {
  if (options.log_details) {
    log_.WriteText(LogLevel::kInformation, L"Copy folder from " + source + L" to " + destination);
  }
  ::CreateDirectoryW(destination.c_str(), nullptr);  // usually there already

  CFolderListing listing(source + kAllEntries);
  while (listing.Next()) {
    const std::wstring entry = source + L"\\" + listing.Name();
    const std::wstring target = destination + L"\\" + listing.Name();
    if (listing.IsFolder()) {
      if (options.recurse && !CopySubFolder(target, entry, options)) {
        return false;
      }
    } else if (!CopyOneFile(target, entry, options)) {
      return false;
    }
  }
  if (listing.Error()) {
    // What wasn't seen wasn't copied either.
    if (options.log_details) {
      log_.Write(LogLevel::kError, L"Fail to copy file = %d", *listing.Error());
    }
    last_failed_path_ = destination;
    return false;
  }
  return true;
}

bool CFolderCopy::CopyWithRetries(const std::wstring& destination, const std::wstring& source,
                                  const CopyOptions& options) {
  for (int attempt = 0; attempt < kCopyAttempts; ++attempt) {
    if (Copy(destination, source, options)) {
      log_.Write(LogLevel::kInformation, L"Copy complete.");
      return true;
    }
    log_.Write(LogLevel::kWarning, L"Copy fail, sleep 3 seconds and retry.");
    ::Sleep(kCopyRetryDelayMs);
  }
  log_.Write(LogLevel::kError, L"Fail to copy folder.");
  return false;
}

bool CFolderCopy::CopyOneFile(const std::wstring& target, const std::wstring& source,
                              const CopyOptions& options) {
  if (options.log_details) {
    log_.WriteText(LogLevel::kInformation, L"Copy file from " + source + L" to " + target);
  }
  if (::CopyFileW(source.c_str(), target.c_str(), FALSE)) {
    return true;
  }
  const DWORD error = ::GetLastError();
  if (options.log_details) {
    log_.Write(LogLevel::kError, L"Fail to copy file = %d", error);
  }
  last_failed_path_ = target;
  return false;
}

bool CFolderCopy::CopySubFolder(const std::wstring& target, const std::wstring& source,
                                const CopyOptions& options) {
  // The program that is running can't replace itself; an earlier stage has done that.
  if (target == running_folder_) {
    return true;
  }
  // What is to be copied must not be deleted with the folder that it lies in.
  if (options.delete_existing_sub_folders && !MayHold(target, source)) {
    if (options.log_details) {
      log_.WriteText(LogLevel::kInformation, L"Delete Dir : " + target);
    }
    std::ignore = DeleteFolderTree(target, owned_root_);  // what stays is copied over
  }
  CopyOptions deeper = options;
  deeper.delete_existing_sub_folders = false;
  return Copy(target, source, deeper);
}

}  // namespace nhupdate
