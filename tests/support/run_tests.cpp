#include "tests/support/run_tests.h"

#include <gmock/gmock.h>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>

#include "base/windows.h"
#include "tests/support/fence.h"
#include "tests/support/throwaway_machine.h"
#endif

namespace nhupdate_test {

#ifdef _WIN32
namespace {

// Without this, Wine's debugger looks at the crash and may end the process with 0, as if the test
// had passed.
LONG WINAPI EndLoudly(EXCEPTION_POINTERS* crash) {
  std::fprintf(stderr, "The test has crashed: exception %08lX.\n",
               crash->ExceptionRecord->ExceptionCode);
  std::_Exit(3);
}

}  // namespace
#endif

int RunTests(int argument_count, char** arguments) {
#ifdef _WIN32
  // ctest reads the list outside of Wine, where a carriage return would be part of a test's name.
  _setmode(_fileno(stdout), _O_BINARY);
#endif
  testing::InitGoogleMock(&argument_count, arguments);
#ifdef _WIN32
  const FenceReach reach = ReachOfThisExecutable();
  if (reach == FenceReach::kPrefix && !GTEST_FLAG_GET(list_tests) && !IsThrowawayMachine()) {
    // In GoogleTest's words, by which ctest knows a skipped test.
    std::printf("[  SKIPPED ] %s\n", kMachineIsKept);
    return kNotForThisMachine;
  }
  ::SetUnhandledExceptionFilter(&EndLoudly);
  RaiseFence(reach);
#endif
  return RUN_ALL_TESTS();
}

}  // namespace nhupdate_test
