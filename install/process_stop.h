#pragma once

// Ending other processes before their files are replaced.

#include <string>

#include "log/log.h"
#include "text/string_table.h"

namespace nhupdate {

// Ends every process of that file name, in any letter case, except the calling one; each gets 3 s.
// Returns false when one of them is still there afterwards. A process that can't be opened for
// reading isn't seen, and of more than 1,024 processes only the first are looked at.
[[nodiscard]] bool TerminateProcessByName(const std::wstring& file_name, const CLog& log);

// Ends all other copies of this program. When one can't be ended the user is told, and the result
// is false.
[[nodiscard]] bool StopUpdateManagers(const StringTable& strings, const CLog& log);

}  // namespace nhupdate
