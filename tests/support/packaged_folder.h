#pragma once

// What is shipped, as tools/package has put it together from the build that the tests belong to.

#include <string>

namespace nhupdate_test {

// The program's folder as it lies on a user's disk. Whether it is there is for the caller to check.
[[nodiscard]] std::wstring PackagedFolder();

}  // namespace nhupdate_test
