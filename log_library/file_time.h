#pragma once

// A FILETIME as one number, which can be compared and subtracted.

#include <cstdint>

#include "base/windows.h"

namespace nhupdate {

// In units of 100 ns.
[[nodiscard]] inline std::uint64_t FileTimeUnits(const FILETIME& time) {
  return (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
}

}  // namespace nhupdate
