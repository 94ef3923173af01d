#pragma once

// What tests expect of the program's records, in parts that many of them need: in the transcripts
// of InstalledProduct, and in those of whole runs of the program.

#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/installed_product.h"
#include "tests/support/recorded_tools.h"

namespace nhupdate_test {

using Lines = std::vector<std::wstring>;

// One after the other.
[[nodiscard]] Lines Join(std::initializer_list<Lines> parts);

// The three records that announce a launch.
[[nodiscard]] Lines LaunchLines(const std::wstring& folder, const std::wstring& executable,
                                const std::wstring& parameters);

// The announcements of all launches.
[[nodiscard]] Lines CheckForUpdateLines();
[[nodiscard]] Lines BackgroundDownloadLines();
[[nodiscard]] Lines CheckForUpdaterLines();
[[nodiscard]] Lines UpdateUpdaterLines();
[[nodiscard]] Lines UpdateProductLines();
[[nodiscard]] Lines StartSelfUpdateLines();
[[nodiscard]] Lines StartFinalUpdateLines();
[[nodiscard]] Lines DownloadNimbaCastLines();
[[nodiscard]] Lines InstallNimbaCastLines();

// The refresh of the updater when the check finds nothing and there is no folder to copy.
[[nodiscard]] Lines FruitlessRefreshLines();

// Steps of the install sequence: no other copy is running, the permissions are granted, the
// staged file new.txt is copied, the product is registered.
[[nodiscard]] Lines NothingToStopLines();
[[nodiscard]] Lines GrantedLines(int return_code = kRecordedToolResult);
[[nodiscard]] Lines CopiedNewFileLines();
[[nodiscard]] Lines RegisteredLines();

// The start-up of a product without texts on a quiet system (tests/support/quiet_system.h).
[[nodiscard]] Lines StartUpLines(const ProductOptions& options = {});

}  // namespace nhupdate_test
