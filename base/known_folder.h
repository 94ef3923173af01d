#pragma once

// Where Windows keeps the data that all users of a machine share.

#include <optional>
#include <string>

namespace nhupdate {

// The ProgramData folder, without a trailing backslash; nothing when the shell doesn't know it.
[[nodiscard]] std::optional<std::wstring> ProgramDataFolder();

}  // namespace nhupdate
