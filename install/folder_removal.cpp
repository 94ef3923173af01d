#include "install/folder_removal.h"

#include <optional>
#include <tuple>

#include "base/entry_deletion.h"
#include "base/folder_listing.h"
#include "base/folder_place.h"
#include "base/held_folder.h"
#include "base/paths.h"
#include "base/windows_path.h"

namespace nhupdate {

namespace {

// Whether something could still put a link in the way to what is deleted, so that it has to be seen
// where that really lies.
enum class Way { kMayChange, kIsKept };

bool EmptyHeld(const CHeldFolder& held, const std::wstring& folder, const CPlace& place, Way way);
bool DeleteFolderAt(const std::wstring& folder, const CPlace& place, Way way);

std::optional<DWORD> DeleteEntryOn(Way way, const std::wstring& path, EntryKind kind,
                                   const CPlace& place) {
  return way == Way::kIsKept ? DeleteEntryInItsPlace(path) : DeleteEntry(path, kind, place);
}

// Listings can be out of date in what they say of a file's attributes.
void DeleteFileEvenIfReadOnly(const std::wstring& file, const CPlace& place,
                              bool is_known_as_read_only, Way way) {
  if (is_known_as_read_only) {
    ClearReadOnly(file, place);
  }
  if (DeleteEntryOn(way, file, EntryKind::kFile, place) == ERROR_ACCESS_DENIED) {
    ClearReadOnly(file, place);
    // What stays keeps its folder from being removed.
    std::ignore = DeleteEntryOn(way, file, EntryKind::kFile, place);
  }
}

// The first file or folder that can be held keeps the folder that it lies in from getting empty
// until the others are gone.
class CFirstEntry {
 public:
  // Return whether the entry is now this one, which is to be deleted at the end.
  [[nodiscard]] bool TakeFile(const std::wstring& file, const CPlace& place) {
    file_ = CHeldFile(file, place);
    return file_.IsValid() && Remember(file, place);
  }
  [[nodiscard]] bool TakeFolder(const std::wstring& folder, const CPlace& place) {
    folder_.emplace(folder);
    if (EmptyHeld(*folder_, folder, place, Way::kMayChange) && folder_->LiesExactlyAt(place)) {
      return Remember(folder, place);
    }
    folder_.reset();
    return false;
  }

  [[nodiscard]] bool IsHeld() const { return file_.IsValid() || folder_; }

  void Delete() {
    if (folder_) {
      folder_.reset();
      std::ignore = DeleteEntry(path_, EntryKind::kFolder, place_);
    } else if (file_.IsValid() && !file_.Delete()) {
      DeleteFileEvenIfReadOnly(path_, place_, false, Way::kMayChange);
    }
  }

 private:
  bool Remember(const std::wstring& path, const CPlace& place) {
    path_ = path;
    place_ = place;
    return true;
  }

  CHeldFile file_;
  std::optional<CHeldFolder> folder_;
  std::wstring path_;
  CPlace place_;
};

// What lies behind a link belongs to somebody else: only what really lies in the folder's place is
// deleted, whatever the names of a listing lead to.
void DeleteContentOf(const std::wstring& folder, const CPlace& place) {
  CFolderListing listing(folder, L"/*.*");
  CFirstEntry first;
  while (listing.Next()) {
    const std::wstring relative_path = L"\\" + listing.Name();
    const std::wstring entry = folder + relative_path;
    const CPlace entry_place = place.Below(relative_path);
    const bool is_kept = first.IsHeld() && IsTakenAsItStands(entry);
    const Way way = is_kept ? Way::kIsKept : Way::kMayChange;
    if (listing.IsFolder()) {
      // What stays keeps this folder from being removed.
      if (first.IsHeld()) {
        std::ignore = DeleteFolderAt(entry, entry_place, way);
      } else if (!first.TakeFolder(entry, entry_place)) {
        std::ignore = DeleteEntry(entry, EntryKind::kFolder, entry_place);
      }
    } else if (listing.IsReadOnly() || first.IsHeld() || !first.TakeFile(entry, entry_place)) {
      DeleteFileEvenIfReadOnly(entry, entry_place, listing.IsReadOnly(), way);
    }
  }
  first.Delete();
}

// Returns false when the folder isn't held, is a link or lies elsewhere: then it keeps its content.
bool EmptyHeld(const CHeldFolder& held, const std::wstring& folder, const CPlace& place, Way way) {
  const bool is_there = way == Way::kIsKept ? held.IsPlain() : held.IsPlainAt(place);
  if (is_there) {
    DeleteContentOf(folder, place);
  }
  return is_there;
}

bool DeleteFolderAt(const std::wstring& folder, const CPlace& place, Way way) {
  {
    const CHeldFolder held(folder);
    std::ignore = EmptyHeld(held, folder, place, way);
  }
  return !DeleteEntryOn(way, folder, EntryKind::kFolder, place);
}

}  // namespace

bool DeleteFolderTree(const std::wstring& folder, const std::wstring& owned_root) {
  return CFolderRemoval(owned_root).Delete(folder);
}

bool CFolderRemoval::Delete(const std::wstring& folder) {
  const std::wstring anchor =
      IsSameOrInside(folder, owned_root_) ? owned_root_ : ParentFolder(folder);
  if (anchor != anchor_ || !anchor_place_.IsKnown()) {
    anchor_ = anchor;
    anchor_place_ = PlaceOfFolder(anchor);
  }
  const CPlace place =
      IsSameOrInside(folder, anchor) ? anchor_place_.Below(folder.substr(anchor.size())) : CPlace();
  return DeleteFolderAt(folder, place, Way::kMayChange);
}

}  // namespace nhupdate
