#pragma once

// What a running process was started from.

#include <string>

#include "base/windows.h"

namespace nhupdate {

// The file name and path of a process's executable. Returns false and leaves both alone when the
// process can't be opened; what can't be had of an opened one is empty.
[[nodiscard]] bool GetProcessImageName(DWORD process_id, std::wstring& name, std::wstring& path);

}  // namespace nhupdate
