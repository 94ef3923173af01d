#pragma once

// What the tests of the workflows share: an installed product whose manager has started, texts for
// its boxes, and the expected records of the launches.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/scripted_shell.h"

namespace nhupdate_test {

using Lines = std::vector<std::wstring>;

// One after the other.
[[nodiscard]] Lines Join(std::initializer_list<Lines> parts);

// The three records that announce a launch.
[[nodiscard]] Lines LaunchLines(const std::wstring& folder, const std::wstring& executable,
                                const std::wstring& parameters);

// The announcements of all launches, as the transcript has them.
[[nodiscard]] Lines CheckForUpdateLines();
[[nodiscard]] Lines BackgroundDownloadLines();
[[nodiscard]] Lines CheckForUpdaterLines();
[[nodiscard]] Lines UpdateUpdaterLines();
[[nodiscard]] Lines UpdateProductLines();
[[nodiscard]] Lines StartSelfUpdateLines();
[[nodiscard]] Lines DownloadNimbaCastLines();
[[nodiscard]] Lines InstallNimbaCastLines();

// An error box with a text of the string table.
[[nodiscard]] ShownBox ErrorBoxOf(const std::wstring& text);
inline constexpr wchar_t kCommonErrorText[] = L"The update failed.";
inline constexpr wchar_t kNeedStopText[] = L"Close the update manager.";

class WorkflowTest : public testing::Test {
 protected:
  explicit WorkflowTest(const ProductOptions& options = {});

  [[nodiscard]] nhupdate::CManagerCenter& Manager() { return product_.Manager(); }

  // Creates an empty file, given relative to the base folder.
  void AddFile(const std::wstring& path) { WriteFileBytes(product_.Base() + path, ""); }
  void AddUpdater() { AddFile(L"\\Updater\\Updater.exe"); }

  InstalledProduct product_;
  RecordedBoxes boxes_;
  RecordedSleeps sleeps_;
};

}  // namespace nhupdate_test
