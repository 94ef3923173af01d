#pragma once

// Lets something happen to a program at a chosen moment of its work, from outside and without its
// knowledge. Both functions take a process whose only thread was created suspended, and return
// false when it can't be done; the thread is suspended as before.

#include "base/windows.h"

namespace nhupdate_test {

// The exit code of a program that a test has ended.
inline constexpr DWORD kEndedByTest = 57005;

// Prepares it to end itself right before its `count`-th call, from 1 on, that changes files or the
// registry or starts a program. What it reads in between makes no difference to what it leaves
// behind.
[[nodiscard]] bool EndBeforeChange(HANDLE process, HANDLE thread, int count);

// Lets its `count`-th allocation fail, from 1 on, of those behind the set-up of the process.
[[nodiscard]] bool FailAllocation(HANDLE process, HANDLE thread, int count);

}  // namespace nhupdate_test
