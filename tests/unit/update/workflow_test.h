#pragma once

// What the tests of the workflows share: an installed product whose manager has started, texts for
// its boxes, and a desktop on which nobody waits.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/product_folders.h"
#include "install/folder_copy.h"
#include "tests/support/expected_records.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/scripted_shell.h"
#include "update/nimba_cast_installation.h"
#include "update/updater_refresh.h"

namespace nhupdate_test {

// The texts of the boxes.
inline constexpr wchar_t kCaption[] = L"Update";
inline constexpr wchar_t kCommonErrorText[] = L"The update failed.";
inline constexpr wchar_t kNeedStopText[] = L"Close the update manager.";

class WorkflowTest : public testing::Test {
 protected:
  explicit WorkflowTest(const ProductOptions& options = {});

  [[nodiscard]] nhupdate::CManagerCenter& Manager() { return product_.Manager(); }

  // What a folder copy within the product is made with.
  [[nodiscard]] nhupdate::CFolderCopy FolderCopy() {
    return {folders_, Manager().Records(), last_failed_path_};
  }

  [[nodiscard]] int RefreshUpdater() {
    nhupdate::CFolderCopy copy = FolderCopy();
    return nhupdate::RefreshUpdater(folders_.UpdaterFolder(), copy, Manager().Records()) ? 1 : 0;
  }

  [[nodiscard]] int InstallNimbaCast() {
    nhupdate::CFolderCopy copy = FolderCopy();
    return nhupdate::InstallNimbaCast(folders_, copy, Manager().Records());
  }

  // Creates an empty file, or deletes a file, given relative to the base folder.
  void AddFile(const std::wstring& path) { WriteFileBytes(product_.Base() + path, ""); }
  void Remove(const std::wstring& path);

  void AddUpdater() { AddFile(kUpdater); }
  void RemoveUpdater() { Remove(kUpdater); }

  static constexpr wchar_t kUpdater[] = L"\\Updater\\Updater.exe";

  InstalledProduct product_;
  const nhupdate::ProductFolders folders_ =
      nhupdate::FoldersOfExecutable(product_.ExecutablePath());
  std::wstring last_failed_path_;
  RecordedBoxes boxes_;
  RecordedSleeps sleeps_;
};

}  // namespace nhupdate_test
