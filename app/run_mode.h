#pragma once

// What the program was started for.

#include <string>
#include <vector>

namespace nhupdate {

enum class RunMode { kNone, kDownload, kInstall, kUpdate, kSelfUpdate, kFinalUpdate };

// The mode that the arguments (without the program's own path) ask for. A switch is a whole
// argument that begins with "-" or "/", in any letter case; everything else is ignored. Of several
// switches the first in the order of RunMode counts, wherever it stands.
[[nodiscard]] RunMode ChooseRunMode(const std::vector<std::wstring>& arguments);

}  // namespace nhupdate
