#include "tests/support/packaged_folder.h"

#include "base/paths.h"
#include "tests/support/files.h"

namespace nhupdate_test {

std::wstring PackagedFolder() {
  const std::wstring build = nhupdate::ParentFolder(nhupdate::ParentFolder(TestProgramFolder()));
  return build + L"\\package\\NHUpdateManager";
}

}  // namespace nhupdate_test
