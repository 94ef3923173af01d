#pragma once

// What every test executable does.

namespace nhupdate_test {

// With this exit code an executable ends whose tests are not for this machine
// (throwaway_machine.h). ctest counts its tests as skipped.
inline constexpr int kNotForThisMachine = 98;

// Runs the tests that the arguments select, behind the fence, and returns the exit code.
[[nodiscard]] int RunTests(int argument_count, char** arguments);

}  // namespace nhupdate_test
