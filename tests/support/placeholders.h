#pragma once

// Puts names in the place of what differs from run to run, so that texts can be compared whole.

#include <string>

#include "base/windows.h"

namespace nhupdate_test {

// The text with the name in the place of the process's id, where the program puts ids: at the end
// of a command line, behind "-ExitWhenParentDie:", and behind the file name in the records about
// the processes it looks for. The same number anywhere else (an error, a part of an account's id)
// means something else and stays.
[[nodiscard]] std::wstring WithProcessNamed(std::wstring text, DWORD id, const std::wstring& name);

// The text with these folders as {root} and {data}, the product's folder in the root as {base}, and
// this process as {pid}. An empty path replaces nothing.
[[nodiscard]] std::wstring WithPlaceholders(std::wstring text, const std::wstring& root,
                                            const std::wstring& program_data);

}  // namespace nhupdate_test
