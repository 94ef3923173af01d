#include "tests/support/run_tests.h"

int main(int argument_count, char** arguments) {
  return nhupdate_test::RunTests(argument_count, arguments);
}
