#pragma once

// The texts by their keys, which are matched exactly.

#include <string>
#include <unordered_map>

namespace nhupdate {

using StringTable = std::unordered_map<std::wstring, std::wstring>;

}  // namespace nhupdate
