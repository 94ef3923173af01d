#pragma once

// For the tests of the folder copy: a source that is there and a destination that isn't.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/files.h"
#include "tests/support/installed_product.h"

namespace nhupdate_test {

class CopyFolderTest : public testing::Test {
 protected:
  CopyFolderTest() {
    product_.Start();
    product_.ForgetRecords();
    CreateFolders(source_);
  }

  int Copy(int recurse, int log_details, int delete_existing) {
    return product_.Manager().CopyFolder(target_, source_, recurse, log_details, delete_existing);
  }

  InstalledProduct product_;
  const std::wstring source_ = product_.Root() + L"\\from";
  const std::wstring target_ = product_.Root() + L"\\to";
};

}  // namespace nhupdate_test
