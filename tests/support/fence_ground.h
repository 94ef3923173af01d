#pragma once

// Which places are inside the fence. Asks Windows past all fakes.

#include <string>

#include "base/windows.h"
#include "tests/support/fence.h"

namespace nhupdate_test {

// Finds out where this executable's places are. Before that nothing is inside.
void SurveyGround(FenceReach reach);

// For all of these: what isn't anything at all (no text, no key) can't be changed either, and
// counts as inside.

[[nodiscard]] bool IsPathInside(const wchar_t* path);

// Whether the program is a stand-in or in a test's own folder. One that Windows would have to
// search is outside.
[[nodiscard]] bool IsProgramInside(const std::wstring& path);

[[nodiscard]] bool IsKeyInside(HKEY key, const wchar_t* sub_key);

// From now on the predefined key leads to the other one; to itself again when that is null.
void RedirectKey(HKEY key, HKEY target);

// As messages name it: its path, as far as that is known.
[[nodiscard]] std::wstring DescribeKey(HKEY key, const wchar_t* sub_key);

// 0 when the handle doesn't tell.
[[nodiscard]] DWORD ProcessIdOf(HANDLE process);

[[nodiscard]] bool IsProcessInside(DWORD process_id);
void AdmitProcess(DWORD process_id);

// For what happens in no place, such as a message box.
[[nodiscard]] bool IsEverythingInside();

// Whether a library comes from inside; null counts as no.
[[nodiscard]] bool IsLibraryInside(HMODULE library);

}  // namespace nhupdate_test
