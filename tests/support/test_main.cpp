#include <gmock/gmock.h>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#endif

int main(int argument_count, char** arguments) {
#ifdef _WIN32
  // The list of tests is read on a system that takes a carriage return for a part of the name.
  _setmode(_fileno(stdout), _O_BINARY);
#endif
  testing::InitGoogleMock(&argument_count, arguments);
  return RUN_ALL_TESTS();
}
