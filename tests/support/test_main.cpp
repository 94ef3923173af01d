#include <gmock/gmock.h>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>

#include "base/windows.h"
#include "tests/support/fence.h"

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

int main(int argument_count, char** arguments) {
#ifdef _WIN32
  // The list of tests is read on a system that takes a carriage return for a part of the name.
  _setmode(_fileno(stdout), _O_BINARY);
#endif
  testing::InitGoogleMock(&argument_count, arguments);
#ifdef _WIN32
  ::SetUnhandledExceptionFilter(&EndLoudly);
  nhupdate_test::RaiseFence(nhupdate_test::ReachOfThisExecutable());
#endif
  return RUN_ALL_TESTS();
}
