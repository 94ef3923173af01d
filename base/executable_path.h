#pragma once

// Where the running executable lies.

#include <string>

namespace nhupdate {

// Its full path, at most 259 characters: a longer one is cut off. Empty when Windows doesn't tell.
[[nodiscard]] std::wstring ExecutablePath();

}  // namespace nhupdate
