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

// Wine's debugger, which would look at the crash, may end the process with 0: that would pass for a
// test without a fault.
LONG WINAPI EndLoudly(EXCEPTION_POINTERS* crash) {
  std::fprintf(stderr, "The test has crashed: exception %08lX.\n",
               crash->ExceptionRecord->ExceptionCode);
  std::_Exit(3);
}

}  // namespace
#endif

int RunTests(int argument_count, char** arguments) {
#ifdef _WIN32
  // The list of tests is read on a system that takes a carriage return for a part of the name.
  _setmode(_fileno(stdout), _O_BINARY);
#endif
  testing::InitGoogleMock(&argument_count, arguments);
#ifdef _WIN32
  const FenceReach reach = ReachOfThisExecutable();
  if (reach == FenceReach::kPrefix && !GTEST_FLAG_GET(list_tests) && !IsThrowawayMachine()) {
    // As GoogleTest says it.
    std::printf("[  SKIPPED ] %s\n", kMachineIsKept);
    return kNotForThisMachine;
  }
  ::SetUnhandledExceptionFilter(&EndLoudly);
  RaiseFence(reach);
#endif
  return RUN_ALL_TESTS();
}

}  // namespace nhupdate_test
