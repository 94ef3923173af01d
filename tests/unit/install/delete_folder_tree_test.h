#pragma once

// For the tests of the deletion of folders: one that is there and empty.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/files.h"
#include "tests/support/installed_product.h"

namespace nhupdate_test {

class DeleteFolderTreeTest : public testing::Test {
 protected:
  DeleteFolderTreeTest() {
    product_.Start();
    product_.ForgetRecords();
    CreateFolders(folder_);
  }

  int Delete() { return product_.Manager().DeleteFolderTree(folder_); }

  InstalledProduct product_;
  const std::wstring folder_ = product_.Root() + L"\\top";
};

}  // namespace nhupdate_test
