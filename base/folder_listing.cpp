#include "base/folder_listing.h"

#include <cwchar>

#include "base/folder_place.h"

namespace nhupdate {

namespace {

bool IsDotEntry(const WIN32_FIND_DATAW& entry) {
  return std::wcscmp(entry.cFileName, L".") == 0 || std::wcscmp(entry.cFileName, L"..") == 0;
}

bool MeansNothingThere(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
         error == ERROR_NO_MORE_FILES;
}

}  // namespace

CFolderListing::CFolderListing(const std::wstring& pattern)
    : entry_(std::make_unique<WIN32_FIND_DATAW>()) {
  const HANDLE search = ::FindFirstFileW(pattern.c_str(), entry_.get());
  const DWORD error = ::GetLastError();
  search_.Reset(search);
  if (!search_.IsValid() && !MeansNothingThere(error)) {
    error_ = error;
  }
}

bool CFolderListing::Next() {
  if (!search_.IsValid()) {
    return false;
  }
  do {
    if (!is_first_ && !::FindNextFileW(search_.Get(), entry_.get())) {
      const DWORD error = ::GetLastError();
      if (error != ERROR_NO_MORE_FILES) {
        error_ = error;
      }
      return false;
    }
    is_first_ = false;
  } while (IsDotEntry(*entry_));
  return true;
}

std::wstring CFolderListing::Name() const {
  return entry_->cFileName;
}

bool CFolderListing::IsFolder() const {
  return (entry_->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool CFolderListing::IsLink() const {
  // Windows keeps the reparse tag in this member, which has no better name.
  const DWORD tag = entry_->dwReserved0;
  return MeansLink(entry_->dwFileAttributes, tag);
}

}  // namespace nhupdate
