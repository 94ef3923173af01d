#pragma once

#include <string>

namespace nhupdate {

// The file version in the version resource of the running executable, as "1.3.0", with a fourth
// part where that isn't 0; "unknown" without one.
[[nodiscard]] std::wstring ProgramVersion();

}  // namespace nhupdate
