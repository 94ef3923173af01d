// Exit codes and errors of launches, which are logged as signed numbers.

#include <gtest/gtest.h>

#include "tests/unit/update/workflow_test.h"
#include "update/child_launch.h"
#include "update/launch_catalog.h"

namespace nhupdate_test {
namespace {

using nhupdate::LaunchOutcome;
using nhupdate::LaunchState;

class ChildLaunchLogTest : public WorkflowTest {
 protected:
  ChildLaunchLogTest() { AddUpdater(); }

  LaunchOutcome Launch() {
    return nhupdate::Launch(nhupdate::kCheckForUpdate, product_.Base() + L"\\Updater",
                            Manager().Records());
  }
};

TEST_F(ChildLaunchLogTest, ShowsExitCodesSigned) {
  struct Case {
    DWORD code;
    const wchar_t* line;
  };
  const Case cases[] = {
      {0, L"2|Updater exit = 0"},           {1, L"2|Updater exit = 1"},
      {2, L"2|Updater exit = 2"},           {259, L"2|Updater exit = 259"},
      {0xFFFFFFFF, L"2|Updater exit = -1"}, {0x80000000, L"2|Updater exit = -2147483648"},
  };
  for (const Case& test_case : cases) {
    product_.ForgetRecords();
    ScriptedShell shell({EndsWith(test_case.code)});

    const LaunchOutcome outcome = Launch();

    EXPECT_EQ(outcome.exit_code, test_case.code);
    EXPECT_EQ(
        product_.Transcript(),
        Join({CheckForUpdateLines(), {L"2|Launch updater success for check.", test_case.line}}));
  }
}

TEST_F(ChildLaunchLogTest, ShowsErrorsSigned) {
  struct Case {
    DWORD error;
    const wchar_t* line;
  };
  const Case cases[] = {
      {ERROR_SUCCESS, L"4|Fail to launch updater for download : 0"},
      {ERROR_CANCELLED, L"4|Fail to launch updater for download : 1223"},
      {0x80070005, L"4|Fail to launch updater for download : -2147024891"},
  };
  for (const Case& test_case : cases) {
    product_.ForgetRecords();
    ScriptedShell shell({FailsWith(test_case.error)});

    const LaunchOutcome outcome = Launch();

    EXPECT_EQ(outcome.state, LaunchState::kNotLaunched);
    EXPECT_EQ(product_.Transcript(), Join({CheckForUpdateLines(), {test_case.line}}));
  }
}

}  // namespace
}  // namespace nhupdate_test
