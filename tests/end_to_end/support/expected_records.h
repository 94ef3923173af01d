#pragma once

// Records that several runs have in common, as they stand in a transcript (see end_to_end_test.h).

#include <string>

#include "tests/end_to_end/support/texts.h"

namespace nhupdate_test {

inline constexpr char kInstalledModule[] = "{base}\\NHUpdateManager";
inline constexpr char kStagedModule[] = "{base}\\Updater\\App\\NHUpdateManager";

// Single records.
inline constexpr char kElevated[] = "2|Process elevated.\n";
inline constexpr char kConfigDeleted[] =
    "2|Updater config file delete ok : {base}\\Updater\\Config\\ut.ini\n";

// The language that Windows tells the program, with and without a Steam that was asked before.
[[nodiscard]] std::string SystemLanguageFound();
[[nodiscard]] std::string LanguageWithoutSteam();

// The reading of a string file.
[[nodiscard]] std::string TextsLoaded(const std::string& path, int count);

// What every run begins with, in a folder with the tests' string file.
[[nodiscard]] std::string StartUp(const std::string& module = kInstalledModule);
[[nodiscard]] std::string UnelevatedStartUp(const std::string& module = kInstalledModule);

// The three records of a launch, and the launches that several runs make.
[[nodiscard]] std::string Launch(const std::string& folder, const std::string& program,
                                 const std::string& parameters);
[[nodiscard]] std::string LaunchHubUpdate();
[[nodiscard]] std::string LaunchSelfUpdate();
[[nodiscard]] std::string LaunchFinalUpdate();

// The beginning of "-download", up to the launch of its check, and the start of its download.
[[nodiscard]] std::string HubCheck();
[[nodiscard]] std::string HubDownload();

// The whole of a "-download" behind its start-up that finds nothing but another version staged.
[[nodiscard]] std::string AnotherVersionDownloaded(const std::string& staged_version);

// The beginning of "-update", up to the launch of its check, and the whole of a refresh that finds
// no new updater and has nothing to copy either.
[[nodiscard]] std::string RefreshCheck();
[[nodiscard]] std::string RefreshFoundNothing();
[[nodiscard]] std::string LaunchUpdaterUpdate();

// A search for other copies of the program that finds none.
[[nodiscard]] std::string NoOtherManager();

// The three grants.
[[nodiscard]] std::string Grants();

// The staged program copies its folder over the installed one, under the given name.
[[nodiscard]] std::string SelfCopied(const std::string& program = "NHUpdateManager.exe");

// The files of the release that are not in folders take the place of those installed.
[[nodiscard]] std::string TopLevelFilesReplaced();

// The rest of the release comes, or comes as far as the file that another process holds.
[[nodiscard]] std::string ReleaseCopied();
[[nodiscard]] std::string CopyFailedAtTheCameras();

// The product's values are in the registry.
[[nodiscard]] std::string Registered();

// The search for empty folders finds the one that the grants have made.
[[nodiscard]] std::string TemporaryFolderRemoved();

// The whole of a "-final_update" that nothing disturbs.
[[nodiscard]] std::string FinalUpdateRecords();

}  // namespace nhupdate_test
