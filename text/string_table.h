#pragma once

// The texts by their keys, which are matched exactly.

#include <string>
#include <unordered_map>

#include "log/log.h"

namespace nhupdate {

using StringTable = std::unordered_map<std::wstring, std::wstring>;

// Adds the texts of a string file to the table, and logs how many there are now. A file that can't
// be read or understood adds nothing.
void LoadStrings(StringTable& strings, const std::wstring& path, const CLog& log);

// The text of the key, or the key itself when there is none.
[[nodiscard]] std::wstring GetString(const StringTable& strings, const std::wstring& key);

}  // namespace nhupdate
