// A test executable that may change the whole machine: whole_machine_probe kept|thrown_away
//
// With "kept" it takes the machine for a real Windows that may not be thrown away, with
// "thrown_away" for one that may.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/other_than_wine.h"
#include "tests/support/run_tests.h"

TEST(WholeMachineProbe, Runs) {
  std::printf("I run\n");
}

int main(int argument_count, char** arguments) {
  const nhupdate_test::OtherThanWine not_wine;
  if (argument_count > 1 && arguments[1] == std::string("thrown_away")) {
    ::SetEnvironmentVariableW(nhupdate_test::kThrowawayVariable, L"1");
  }
  return nhupdate_test::RunTests(argument_count, arguments);
}
