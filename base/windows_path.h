#pragma once

// How paths are passed to Windows.

#include <string>

namespace nhupdate {

// The form of a path that Windows takes whatever its length. Unless an administrator has allowed
// long paths, Windows takes a path of more than about 250 units for one that isn't there, so such a
// path gets the prefix of the extended-length form. Only for Windows' file functions: in records
// and comparisons a path stays what it is. Shorter paths, and those that don't say where they
// begin, are returned as they are.
[[nodiscard]] std::wstring PathForWindows(const std::wstring& path);

// Takes the prefix off again: Windows hands out a path with it where a program was started so. What
// has no other form, such as the name of a volume, stays as it is.
[[nodiscard]] std::wstring WithoutExtendedPrefix(const std::wstring& path);

// True when Windows takes each name in the path as it stands. In paths of ordinary length it drops
// dots and spaces at the end, and one dot at the end of each name before: such names, which can be
// given by paths of the extended-length form, lead to other entries than those that have them.
[[nodiscard]] bool IsTakenAsItStands(const std::wstring& path);

}  // namespace nhupdate
