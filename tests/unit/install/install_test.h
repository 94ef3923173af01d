#pragma once

// What the mechanisms of an installation are given: a product's folders and a log in memory.

#include "base/product_folders.h"
#include "tests/support/recorded_log.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {

using Lines = std::vector<std::wstring>;

inline constexpr DWORD kLinkTags[] = {IO_REPARSE_TAG_MOUNT_POINT, IO_REPARSE_TAG_SYMLINK};

class InstallTest : public testing::Test {
 protected:
  InstallTest() { CreateFolders(folders_.module_folder); }

  // The names begin with a backslash.
  static void WriteFiles(const std::wstring& folder, std::initializer_list<const wchar_t*> names,
                         const std::string& bytes = "x") {
    for (const wchar_t* name : names) {
      WriteFileBytes(folder + name, bytes);
    }
  }

  // The folders of an executable in a drive's root, and of one whose path is not known whole.
  [[nodiscard]] std::vector<ProductFolders> FoldersWithoutBase() const {
    std::vector<ProductFolders> both = {folders_, folders_};
    both[0].base_folder.clear();
    both[1].is_executable_path_cut_off = true;
    return both;
  }

  ScratchFolder scratch_;
  const std::wstring root_ = scratch_.Path() + L"\\Corvane";
  ProductFolders folders_ =
      FoldersOfExecutable(root_ + L"\\Nimba Hub\\NHUpdateManager\\NHUpdateManager.exe");
  const std::wstring base_ = folders_.base_folder;
  const std::wstring app_ = folders_.app_folder;
  RecordedLog log_{root_};
};

}  // namespace nhupdate_test
