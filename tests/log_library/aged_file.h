#pragma once

#include <gtest/gtest.h>

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

// The moment so many hours before another one, or before now; after it when they are negative.
[[nodiscard]] inline FILETIME HoursBefore(FILETIME time, int hours) {
  constexpr LONGLONG kUnitsPerHour = 60LL * 60 * 10'000'000;
  LARGE_INTEGER units = {{time.dwLowDateTime, static_cast<LONG>(time.dwHighDateTime)}};
  units.QuadPart -= hours * kUnitsPerHour;
  return {units.LowPart, static_cast<DWORD>(units.HighPart)};
}

[[nodiscard]] inline FILETIME HoursAgo(int hours) {
  FILETIME now = {};
  ::GetSystemTimeAsFileTime(&now);
  return HoursBefore(now, hours);
}

// Says of a file or folder that it was last written then.
inline void SetLastWritten(const std::wstring& path, FILETIME time) {
  const nhupdate::UniqueFile file(::CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                                OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                                                nullptr));
  EXPECT_TRUE(::SetFileTime(file.Get(), nullptr, nullptr, &time));
}

}  // namespace nhupdate_test
