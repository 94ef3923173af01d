// How often a self update tries to copy itself, and how long it waits.

#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/support/failing_copy.h"
#include "tests/unit/update/self_update_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SelfUpdateCopyTest : public SelfUpdateTest {};

TEST_F(SelfUpdateCopyTest, GivesStoppedProcessesASecondBeforeItBegins) {
  ScriptedShell shell({EndsWith(0)});
  const RecordedSleeps sleeps(
      [&](int) { EXPECT_FALSE(nhupdate::Exists(product_.Base() + kInstalledManager)); });

  std::ignore = Manager().SelfUpdate();

  EXPECT_THAT(sleeps.Milliseconds(), ElementsAre(1000u));
  EXPECT_TRUE(nhupdate::Exists(product_.Base() + kInstalledManager));
}

TEST_F(SelfUpdateCopyTest, IsTriedUpToThreeTimes) {
  struct Case {
    int failures;
    std::vector<DWORD> sleeps;
    Lines failed_lines;
  };
  const Case cases[] = {
      {1, {1000, 3000}, FailedCopyLines()},
      {2, {1000, 3000, 3000}, Join({FailedCopyLines(), FailedCopyLines()})},
  };
  for (const Case& test_case : cases) {
    product_.ForgetRecords();
    ScriptedShell shell({EndsWith(0)});
    const RecordedSleeps sleeps;
    const FailingCopy copy(ERROR_SHARING_VIOLATION,
                           [&](const std::wstring&) { return copy.Calls() <= test_case.failures; });

    const int result = Manager().SelfUpdate();

    EXPECT_EQ(result, 0);
    EXPECT_EQ(sleeps.Milliseconds(), test_case.sleeps);
    EXPECT_EQ(product_.Transcript(),
              Join({StoppedLines(),
                    test_case.failed_lines,
                    CopyLines(),
                    CopiedLine(),
                    StartFinalUpdateLines(),
                    {L"2|Launch NHUpdateManager success for final update."}}));
  }
}

TEST_F(SelfUpdateCopyTest, IsGivenUpAfterThreeFailuresAndTheirSleeps) {
  ScriptedShell shell({});
  const FailingCopy copy(ERROR_SHARING_VIOLATION);
  // The user is told when it is over, not before the last sleep.
  const RecordedSleeps sleeps([&](int) { EXPECT_THAT(boxes_.Shown(), IsEmpty()); });

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 16);
  EXPECT_EQ(product_.Transcript(), Join({StoppedLines(),
                                         FailedCopyLines(),
                                         FailedCopyLines(),
                                         FailedCopyLines(),
                                         {L"4|Fail to copy NHUpdateManager finally."}}));
  EXPECT_THAT(sleeps.Milliseconds(), ElementsAre(1000u, 3000u, 3000u, 3000u));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kCommonErrorText, kCaption)));
}

}  // namespace
}  // namespace nhupdate_test
