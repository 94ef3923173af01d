#pragma once

// What a reparse point is: some entries of a folder stand for another place, others only need a
// driver's help to be read.

#include "base/windows.h"

namespace nhupdate {

// Of an entry that is a reparse point but doesn't say of what kind.
inline constexpr DWORD kNoReparseTag = 0;

// True for a junction, symbolic link or mount point. Placeholders of cloud storage are no links;
// what doesn't say what it is counts as one.
[[nodiscard]] inline bool MeansLink(DWORD attributes, DWORD reparse_tag) {
  return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (reparse_tag == kNoReparseTag || IsReparseTagNameSurrogate(reparse_tag));
}

}  // namespace nhupdate
