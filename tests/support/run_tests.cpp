#include "tests/support/run_tests.h"

#include <gmock/gmock.h>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "tests/support/fence.h"
#include "tests/support/throwaway_machine.h"
#endif

namespace nhupdate_test {

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
  RaiseFence(reach);
#endif
  return RUN_ALL_TESTS();
}

}  // namespace nhupdate_test
