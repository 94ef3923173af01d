#include "tests/support/unused_name.h"

#include <cstdint>

#include "base/windows.h"

namespace nhupdate_test {

namespace {

// By the system's clock, since 1601.
std::uint64_t CurrentMilliseconds() {
  constexpr std::uint64_t kFileTimeUnitsPerMs = 10'000;
  FILETIME now = {};
  ::GetSystemTimeAsFileTime(&now);
  return ((std::uint64_t{now.dwHighDateTime} << 32) | now.dwLowDateTime) / kFileTimeUnitsPerMs;
}

}  // namespace

std::wstring UnusedName() {
  static const std::uint64_t process_start = CurrentMilliseconds();
  static int count = 0;
  return std::to_wstring(process_start) + L"-" + std::to_wstring(++count);
}

}  // namespace nhupdate_test
