#include "tests/log_library/aged_file.h"

#include <gtest/gtest.h>

#include "base/unique_handle.h"

namespace nhupdate_test {

FILETIME HoursAgo(int hours) {
  constexpr LONGLONG kUnitsPerHour = 60LL * 60 * 10'000'000;
  FILETIME now = {};
  ::GetSystemTimeAsFileTime(&now);
  LARGE_INTEGER units = {{now.dwLowDateTime, static_cast<LONG>(now.dwHighDateTime)}};
  units.QuadPart -= hours * kUnitsPerHour;
  return {units.LowPart, static_cast<DWORD>(units.HighPart)};
}

void SetLastWritten(const std::wstring& path, FILETIME time) {
  const nhupdate::UniqueFile file(::CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                                OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                                                nullptr));
  EXPECT_TRUE(::SetFileTime(file.Get(), nullptr, nullptr, &time));
}

}  // namespace nhupdate_test
