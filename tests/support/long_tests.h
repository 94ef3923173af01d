#pragma once

// Some tests try samples of what there is to be tried, since all of it takes hours.

#include "base/windows.h"

namespace nhupdate_test {

// True in tools/test --long, when all of it is wanted.
[[nodiscard]] inline bool IsLongTestWanted() {
  return ::GetEnvironmentVariableW(L"NHUPDATE_LONG_TESTS", nullptr, 0) != 0;
}

}  // namespace nhupdate_test
