#include "install/folder_removal.h"

#include <tuple>

#include "base/folder_listing.h"
#include "base/held_folder.h"
#include "base/paths.h"
#include "base/windows.h"

namespace nhupdate {

namespace {

void DeleteFileEvenIfReadOnly(const std::wstring& file) {
  const DWORD attributes = ::GetFileAttributesW(file.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    const DWORD writable = attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
    ::SetFileAttributesW(file.c_str(), writable);  // the deletion shows whether it worked
  }
  ::DeleteFileW(file.c_str());  // a file that stays keeps its folder, which shows
}

void DeleteContentOf(const std::wstring& folder, const std::wstring& owned_root) {
  // What lies behind a link belongs to somebody else.
  const CHeldFolder held(folder);
  if (!held.IsPlainWithin(IsSameOrInside(folder, owned_root) ? owned_root : ParentFolder(folder))) {
    return;
  }
  CFolderListing listing(folder + L"/*.*");
  while (listing.Next()) {
    const std::wstring entry = folder + L"\\" + listing.Name();
    if (listing.IsFolder()) {
      std::ignore = DeleteFolderTree(entry, owned_root);  // what stays keeps this folder
    } else {
      DeleteFileEvenIfReadOnly(entry);
    }
  }
}

}  // namespace

bool DeleteFolderTree(const std::wstring& folder, const std::wstring& owned_root) {
  DeleteContentOf(folder, owned_root);
  return ::RemoveDirectoryW(folder.c_str()) != FALSE;
}

}  // namespace nhupdate
