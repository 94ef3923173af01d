#pragma once

// Starting other programs, with the user's rights or elevated.

#include <filesystem>
#include <string>

#include "owned_handle.h"

namespace nimba_hub {

// Starts a program without a console window and with its own folder as the current one. None when
// it can't be started.
[[nodiscard]] OwnedHandle StartProgram(const std::filesystem::path& program,
                                       const std::wstring& arguments);

struct ElevatedStart {
  OwnedHandle process;          // none when it can't be started
  DWORD error = ERROR_SUCCESS;  // ERROR_CANCELLED: the user doesn't want to
};

// Asks the user for consent, in front of the given window, and starts the program elevated and
// hidden. Returns when the user has answered.
[[nodiscard]] ElevatedStart StartElevated(const std::filesystem::path& program,
                                          const std::wstring& arguments, HWND window);

// Of a process that has ended.
[[nodiscard]] DWORD ExitCodeOf(HANDLE process);

}  // namespace nimba_hub
