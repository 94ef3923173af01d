#pragma once

// Where a folder really is. One folder can go by many names: through links, as a short name, in
// another letter case, or as seen from the current drive.

#include <string>

#include "base/unique_handle.h"

namespace nhupdate {

// Opens the folder for listing and, as long as the handle lives, keeps others from renaming or
// removing it. `flags` are further ones of CreateFileW; without any, links are followed.
[[nodiscard]] UniqueFile OpenFolder(const std::wstring& folder, DWORD flags);

// The path of an open folder with all links on the way resolved, in the kernel's form, which every
// volume has, and without a trailing backslash. Empty when it can't be had.
[[nodiscard]] std::wstring FinalPath(const UniqueFile& folder);

// True when two final paths are one, in the eyes of Windows, which ignores the letter case.
[[nodiscard]] bool IsSamePlace(const std::wstring& left, const std::wstring& right);

// True when the first is the second, or lies below it; both are final paths.
[[nodiscard]] bool IsAtOrBelowPlace(const std::wstring& path, const std::wstring& folder);

}  // namespace nhupdate
