#pragma once

// The version of a product folder, as its version file has it.

#include <string>

namespace nhupdate {

// The version in the folder's "Version.txt", at most 255 characters; empty when there is none.
[[nodiscard]] std::wstring ReadProductVersion(const std::wstring& folder);

}  // namespace nhupdate
