#pragma once

// Which places are inside the fence. Asks Windows by its real functions, whatever a test fakes.

#include <string>

#include "base/windows.h"
#include "tests/support/fence.h"

namespace nhupdate_test {

// Finds out where this executable's places are. To be called before all other functions here.
void SurveyGround(FenceReach reach);

// A path, program or key that is none at all (no text, no valid handle) counts as inside: nothing
// can be changed by it.

[[nodiscard]] bool IsPathInside(const wchar_t* path);

// Whether the program lies in a place that is inside, or beside this executable as the stand-ins
// do. One without a drive in its path, for which Windows would search, is outside.
[[nodiscard]] bool IsProgramInside(const std::wstring& path);

[[nodiscard]] bool IsKeyInside(HKEY key, const wchar_t* sub_key);

// Tells the fence that the predefined key leads to `target` now, or to itself if that is null.
void RedirectKey(HKEY key, HKEY target);

// The key's path for messages, as far as that is known.
[[nodiscard]] std::wstring DescribeKey(HKEY key, const wchar_t* sub_key);

// 0 when Windows doesn't tell it for this handle.
[[nodiscard]] DWORD ProcessIdOf(HANDLE process);

[[nodiscard]] bool IsProcessInside(DWORD process_id);
void AdmitProcess(DWORD process_id);

// For what belongs to no place, such as a message box.
[[nodiscard]] bool IsEverythingInside();

// Whether a library comes from inside; null counts as no.
[[nodiscard]] bool IsLibraryInside(HMODULE library);

}  // namespace nhupdate_test
