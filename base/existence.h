#pragma once

// Whether there is anything under a name.

#include <string>

namespace nhupdate {

// True when a file or a folder of that name is there; a file that may not be read counts too.
[[nodiscard]] bool Exists(const std::wstring& path);

}  // namespace nhupdate
