#pragma once

// What has to be settled for the process before it does anything else.

namespace nhupdate {

// Lets want of memory end the process (base/want_of_memory.h), turns off the system's own error
// dialogs, which would stop a background program until somebody answers them, and keeps the current
// folder and PATH out of the search for DLLs. Returns false when Windows refuses the latter.
[[nodiscard]] bool SetUpProcess();

}  // namespace nhupdate
