#pragma once

// Copying folders, without any of the program's own code for that.

#include <string>

namespace nhupdate_stand_in {

// Copies what is in `source` over `destination`, creating that where it is missing. Returns whether
// everything could be copied.
[[nodiscard]] bool CopyTree(const std::wstring& source, const std::wstring& destination);

}  // namespace nhupdate_stand_in
