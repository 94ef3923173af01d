#include "base/folder_listing.h"

#include <cwchar>

#include "base/folder_place.h"
#include "base/windows_path.h"

namespace nhupdate {

namespace {

bool IsDotEntry(const WIN32_FIND_DATAW& entry) {
  return std::wcscmp(entry.cFileName, L".") == 0 || std::wcscmp(entry.cFileName, L"..") == 0;
}

bool HasAttribute(const WIN32_FIND_DATAW& entry, DWORD attribute) {
  return (entry.dwFileAttributes & attribute) != 0;
}

bool MeansNoFolder(DWORD error, const std::wstring& folder) {
  switch (error) {
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY:  // a file
      return true;
    default:
      break;
  }
  // Other systems than Windows have other errors for a file in the folder's place.
  const DWORD attributes = ::GetFileAttributesW(PathForWindows(folder).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

CFolderListing::CFolderListing(const std::wstring& folder, const wchar_t* wildcard)
    : entry_(std::make_unique<WIN32_FIND_DATAW>()) {
  const HANDLE search = ::FindFirstFileW(PathForWindows(folder + wildcard).c_str(), entry_.get());
  const DWORD error = ::GetLastError();
  search_.Reset(search);
  // Some folders have no entry at all, not even "." and "..". Of a folder that isn't there Windows
  // says ERROR_PATH_NOT_FOUND instead.
  const bool is_empty = error == ERROR_FILE_NOT_FOUND || error == ERROR_NO_MORE_FILES;
  if (!search_.IsValid() && !is_empty) {
    error_ = error;
    has_no_folder_ = MeansNoFolder(error, folder);
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
  return HasAttribute(*entry_, FILE_ATTRIBUTE_DIRECTORY);
}

bool CFolderListing::IsReadOnly() const {
  return HasAttribute(*entry_, FILE_ATTRIBUTE_READONLY);
}

bool CFolderListing::IsLink() const {
  // Windows keeps the reparse tag in this member, which has no better name.
  const DWORD tag = entry_->dwReserved0;
  return MeansLink(entry_->dwFileAttributes, tag);
}

}  // namespace nhupdate
