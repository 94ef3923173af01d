#pragma once

// What is shipped, as tools/package has put it together from the build that the tests belong to.

#include <string>

#include "base/paths.h"
#include "tests/support/files.h"

namespace nhupdate_test {

// The program's folder as it lies on a user's disk. Whether it is there is for the caller to check.
[[nodiscard]] inline std::wstring PackagedFolder() {
  const std::wstring build = nhupdate::ParentFolder(nhupdate::ParentFolder(TestProgramFolder()));
  return build + L"\\package\\NHUpdateManager";
}

}  // namespace nhupdate_test
