#pragma once

// The whole run of the program, from the start checks to the exit code.

namespace nhupdate {

// Reads the command line of the process, does the one thing it asks for and returns the exit code
// of the process (update/result_code.h).
[[nodiscard]] int RunProgram();

}  // namespace nhupdate
