#pragma once

// Deleting single files and folders by their own handle. What was opened is looked at and deleted:
// nothing can take its place in between, whoever may write to the folders on the way. What remains:
// others can move something else of theirs to that place before it is opened.

#include <optional>
#include <string>

#include "base/folder_place.h"
#include "base/windows.h"

namespace nhupdate {

enum class EntryKind { kFile, kFolder };

// Deletes the file, the folder if it is empty, or the link itself, provided that it really lies at
// that place. Returns the error, ERROR_CANT_ACCESS_FILE when it lies elsewhere; nothing when it is
// deleted. A file is not taken for a folder, nor the other way round.
[[nodiscard]] std::optional<DWORD> DeleteEntry(const std::wstring& path, EntryKind kind,
                                               const CPlace& place);

// Takes the read-only attribute off a file that really lies at that place. What doesn't work shows
// when the file is deleted.
void ClearReadOnly(const std::wstring& file, const CPlace& place);

}  // namespace nhupdate
