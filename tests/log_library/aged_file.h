#pragma once

#include <string>

#include "base/windows.h"

namespace nhupdate_test {

// The moment so many hours before another one, or before now; after it when they are negative.
[[nodiscard]] FILETIME HoursBefore(FILETIME time, int hours);
[[nodiscard]] FILETIME HoursAgo(int hours);

// Says of a file or folder that it was last written then.
void SetLastWritten(const std::wstring& path, FILETIME time);

}  // namespace nhupdate_test
