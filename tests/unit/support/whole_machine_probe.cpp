// A test executable with the fence around the whole machine: whole_machine_probe kept|thrown_away
//
// "kept": on a machine that isn't Wine's and of which nobody says that it may be thrown away;
// "thrown_away": on one of which somebody does.

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
