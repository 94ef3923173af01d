#pragma once

// What the mechanisms of an installation are given: a product's folders and a log in memory.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/product_folders.h"
#include "tests/support/files.h"
#include "tests/support/recorded_log.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {

using Lines = std::vector<std::wstring>;

class InstallTest : public testing::Test {
 protected:
  InstallTest() { CreateFolders(folders_.module_folder); }

  ScratchFolder scratch_;
  const std::wstring root_ = scratch_.Path() + L"\\Corvane";
  nhupdate::ProductFolders folders_ =
      nhupdate::FoldersOfExecutable(root_ + L"\\Nimba Hub\\NHUpdateManager\\NHUpdateManager.exe");
  const std::wstring base_ = folders_.base_folder;
  const std::wstring app_ = folders_.app_folder;
  RecordedLog log_{root_};
};

}  // namespace nhupdate_test
