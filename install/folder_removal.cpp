#include "install/folder_removal.h"

#include <tuple>

#include "base/entry_deletion.h"
#include "base/folder_listing.h"
#include "base/folder_place.h"
#include "base/held_folder.h"
#include "base/paths.h"

namespace nhupdate {

namespace {

bool DeleteFolderAt(const std::wstring& folder, const CPlace& place);

// Listings can be out of date in what they say of a file's attributes.
void DeleteFileEvenIfReadOnly(const std::wstring& file, const CPlace& place,
                              bool is_known_as_read_only) {
  if (is_known_as_read_only) {
    ClearReadOnly(file, place);
  }
  if (DeleteEntry(file, EntryKind::kFile, place) == ERROR_ACCESS_DENIED) {
    ClearReadOnly(file, place);
    // What stays keeps its folder from being removed.
    std::ignore = DeleteEntry(file, EntryKind::kFile, place);
  }
}

// What lies behind a link belongs to somebody else: only what really lies in the folder's place is
// deleted, whatever the names of a listing lead to.
void DeleteContentOf(const std::wstring& folder, const CPlace& place) {
  CFolderListing listing(folder, L"/*.*");
  while (listing.Next()) {
    const std::wstring relative_path = L"\\" + listing.Name();
    const std::wstring entry = folder + relative_path;
    const CPlace entry_place = place.Below(relative_path);
    if (listing.IsFolder()) {
      std::ignore =
          DeleteFolderAt(entry, entry_place);  // what stays keeps this folder from being removed
      continue;
    }
    DeleteFileEvenIfReadOnly(entry, entry_place, listing.IsReadOnly());
  }
}

bool DeleteFolderAt(const std::wstring& folder, const CPlace& place) {
  {
    const CHeldFolder held(folder);
    if (held.IsPlainAt(place)) {
      DeleteContentOf(folder, place);
    }
  }
  return !DeleteEntry(folder, EntryKind::kFolder, place);
}

}  // namespace

bool DeleteFolderTree(const std::wstring& folder, const std::wstring& owned_root) {
  const std::wstring anchor =
      IsSameOrInside(folder, owned_root) ? owned_root : ParentFolder(folder);
  return DeleteFolderAt(folder, PlaceSeenFrom(anchor, folder));
}

}  // namespace nhupdate
