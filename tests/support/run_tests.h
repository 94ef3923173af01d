#pragma once

// The main function of every test executable.

namespace nhupdate_test {

// The exit code of an executable whose tests are not for this machine (throwaway_machine.h). It
// also prints "[  SKIPPED ]", by which ctest counts the test as skipped.
inline constexpr int kNotForThisMachine = 98;

// Runs the tests that the arguments select, behind the fence, and returns the exit code.
[[nodiscard]] int RunTests(int argument_count, char** arguments);

}  // namespace nhupdate_test
