#include <gmock/gmock.h>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "tests/support/fence.h"
#endif

int main(int argument_count, char** arguments) {
#ifdef _WIN32
  // The list of tests is read on a system that takes a carriage return for a part of the name.
  _setmode(_fileno(stdout), _O_BINARY);
#endif
  testing::InitGoogleMock(&argument_count, arguments);
#ifdef _WIN32
  nhupdate_test::RaiseFence(nhupdate_test::ReachOfThisExecutable());
#endif
  return RUN_ALL_TESTS();
}
