#include <string>
#include <tuple>

#include "app/manager_center.h"
#include "base/folder_listing.h"
#include "base/paths.h"
#include "base/pinned_folder.h"
#include "base/windows.h"

namespace nhupdate {

namespace {

void DeleteFileEvenIfReadOnly(const std::wstring& file) {
  const DWORD attributes = ::GetFileAttributesW(file.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    const DWORD writable = attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
    std::ignore = ::SetFileAttributesW(file.c_str(), writable);  // the deletion shows it
  }
  std::ignore = ::DeleteFileW(file.c_str());  // a file that stays keeps its folder, which shows
}

}  // namespace

int CManagerCenter::CollectEmptyFolders(const std::wstring& folder) {
  int is_empty = 1;
  CFolderListing listing(folder + kAllEntries);
  while (listing.Next()) {
    if (!listing.IsFolder() || listing.IsLink()) {
      is_empty = 0;
      continue;
    }
    const std::wstring sub_folder = folder + L"\\" + listing.Name();
    if (CollectEmptyFolders(sub_folder) != 0) {
      Log(LogLevel::kInformation, L"Remove empty folder : %s", sub_folder);
      folders_to_remove_.push_back(sub_folder);
    } else {
      is_empty = 0;
    }
  }
  // A folder of which only a part was seen must not be taken for an empty one.
  return listing.HasBrokenOff() ? 0 : is_empty;
}

int CManagerCenter::DeleteFolderTree(const std::wstring& folder) {
  DeleteContentOf(folder);
  return ::RemoveDirectoryW(folder.c_str());
}

void CManagerCenter::DeleteContentOf(const std::wstring& folder) {
  // What lies behind a link belongs to somebody else. Within the product, where some folders are
  // open to everybody, the whole way to the folder must be free of them.
  const CPinnedFolder pinned(folder);
  const std::wstring anchor =
      IsSameOrInside(folder, paths_.base_folder) ? paths_.base_folder : ParentFolder(folder);
  if (!pinned.IsAtOrBelow(anchor)) {
    return;
  }
  CFolderListing listing(folder + L"/*.*");
  while (listing.Next()) {
    const std::wstring entry = folder + L"\\" + listing.Name();
    if (listing.IsFolder()) {
      std::ignore = DeleteFolderTree(entry);  // what stays keeps this folder, which shows
    } else {
      DeleteFileEvenIfReadOnly(entry);
    }
  }
}

}  // namespace nhupdate
