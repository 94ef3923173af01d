#pragma once

// The name of this program's executable, by which its other copies are found among the processes.

namespace nhupdate {

inline constexpr wchar_t kProgramFileName[] = L"NHUpdateManager.exe";

}  // namespace nhupdate
