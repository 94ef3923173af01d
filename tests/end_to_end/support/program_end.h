#pragma once

// Ends a program at a chosen moment of its work, from outside and without its knowledge.

#include "base/windows.h"

namespace nhupdate_test {

// The exit code of a program that was ended in this way.
inline constexpr DWORD kEndedBeforeChange = 57005;

// Takes a process whose only thread was created suspended, and prepares it to end itself right
// before its `count`-th call, from 1 on, that changes files or the registry or starts a program.
// What it reads in between makes no difference to what it leaves behind. Returns false when that
// can't be done; the thread is suspended as before.
[[nodiscard]] bool EndBeforeChange(HANDLE process, HANDLE thread, int count);

}  // namespace nhupdate_test
