#pragma once

// Deleting single files and folders by their own handle. What was opened is looked at and deleted:
// nothing can take its place in between, whoever may write to the folders on the way. What remains:
// others can move something else of theirs to that place before it is opened.

#include <optional>
#include <string>

#include "base/folder_place.h"
#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

enum class EntryKind { kFile, kFolder };

// Deletes the file, the folder if it is empty, or the link itself, provided that it really lies at
// that place. Returns the error, ERROR_CANT_ACCESS_FILE when it lies elsewhere; nothing when it is
// deleted. A file is not taken for a folder, nor the other way round.
[[nodiscard]] std::optional<DWORD> DeleteEntry(const std::wstring& path, EntryKind kind,
                                               const CPlace& place);

// The same for an entry of either kind that can't but lie where it seems to: the folder is held,
// and so is a file (CHeldFile) or a folder (CHeldFolder) in it.
[[nodiscard]] std::optional<DWORD> DeleteEntryInItsPlace(const std::wstring& path);

// A file that is going to be deleted, and that nobody else can delete or move meanwhile. So its
// folder isn't empty as long as the object lives, and only an empty folder can be turned into a
// link where it is (base/held_folder.h): if the folder is held too, the names in it lead nowhere
// else.
class CHeldFile {
 public:
  CHeldFile() = default;  // none

  // None either when it can't be opened so, or doesn't really lie at that place, or has several
  // names: as long as one is held the others can't be deleted.
  CHeldFile(const std::wstring& path, const CPlace& place);

  [[nodiscard]] bool IsValid() const { return file_.IsValid(); }

  // Deletes the file and holds none any more. Returns false when it can't be deleted.
  [[nodiscard]] bool Delete();

 private:
  UniqueFile file_;
};

// Takes the read-only attribute off a file that really lies at that place. What doesn't work shows
// when the file is deleted.
void ClearReadOnly(const std::wstring& file, const CPlace& place);

}  // namespace nhupdate
