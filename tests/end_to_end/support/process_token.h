#pragma once

// Tokens for programs that are to run elevated, or not, whatever the tests themselves are.

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

[[nodiscard]] nhupdate::UniqueKernelHandle OpenOwnToken();

[[nodiscard]] bool IsElevated(HANDLE token);

// A token that is elevated, or not, for a program that starts in the name of the given one; a test
// failure and none when there is no such. Neither way of making one needs a privilege.
[[nodiscard]] nhupdate::UniqueKernelHandle MakeToken(HANDLE token, bool is_elevated);

}  // namespace nhupdate_test
