#pragma once

#include <string>

#include "base/windows.h"

namespace nhupdate_test {

// A moment so many hours ago; in the future when they are negative.
[[nodiscard]] FILETIME HoursAgo(int hours);

// Says of a file or folder that it was last written then.
void SetLastWritten(const std::wstring& path, FILETIME time);

}  // namespace nhupdate_test
