#pragma once

// The updater as a host sees it: where its program lies, how it is started, and whether it is at
// work.

#include <filesystem>
#include <string>

#include "windows_api.h"

namespace nimba_hub {

// In the order in which they follow each other in an update. -install is the installer's.
enum class Mode { kDownload, kUpdate, kSelfUpdate, kFinalUpdate };

struct Command {
  std::filesystem::path program;
  std::wstring argument;
};

// -self_update is the staged copy's, everything else the installed one's.
[[nodiscard]] Command CommandFor(Mode mode, const std::filesystem::path& product_folder);

// The folder where a release is staged.
[[nodiscard]] std::filesystem::path StagedFolder(const std::filesystem::path& product_folder);

// How many processes of that file name there are on the machine, in all sessions; none when Windows
// doesn't say.
[[nodiscard]] int CountProcesses(const std::wstring& file_name);

inline constexpr wchar_t kUpdateProgramName[] = L"NHUpdateManager.exe";

}  // namespace nimba_hub
