#include <gtest/gtest.h>

#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Lines UntilUpdate() {
  return Join({{L"2|Function : Update"}, FruitlessRefreshLines(), UpdateProductLines()});
}

Lines UntilNextStage() {
  return Join({UntilUpdate(),
               {L"2|Launch updater success for update.", L"2|Updater exit = 0"},
               StartSelfUpdateLines()});
}

class UpdateTest : public WorkflowTest {
 protected:
  UpdateTest() {
    AddUpdater();
    AddFile(kStagedManager);
  }

  static constexpr wchar_t kStagedManager[] =
      L"\\Updater\\App\\NHUpdateManager\\NHUpdateManager.exe";
};

TEST_F(UpdateTest, StartsTheStagedCopyAfterTheUpdate) {
  ScriptedShell shell({EndsWith(1), EndsWith(0), EndsWith(0)});

  const int result = Manager().Update();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            Join({UntilNextStage(), {L"2|Launch NHUpdateManager success for self update."}}));
  EXPECT_THAT(boxes_.Shown(), IsEmpty());
}

TEST_F(UpdateTest, IgnoresThatTheRefreshFailed) {
  ScriptedShell shell({EndsWith(0), EndsWith(9), EndsWith(0), EndsWith(0)});

  const int result = Manager().Update();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(
      product_.Transcript(),
      Join({{L"2|Function : Update", L"2|Begin update updater."},
            CheckForUpdaterLines(),
            {L"2|Launch updater success for check.", L"2|Updater exit = 0",
             L"2|New updater available."},
            UpdateUpdaterLines(),
            {L"2|Launch updater success for update.", L"2|Updater exit = 9", L"2|Update fail."},
            UpdateProductLines(),
            {L"2|Launch updater success for update.", L"2|Updater exit = 0"},
            StartSelfUpdateLines(),
            {L"2|Launch NHUpdateManager success for self update."}}));
}

TEST_F(UpdateTest, EndsWithoutABoxWhenTheUpdaterIsMissing) {
  RemoveUpdater();
  ScriptedShell shell({});

  const int result = Manager().Update();

  const Lines missing = {L"4|Update.exe not found : {base}\\Updater\\Updater.exe"};
  EXPECT_EQ(result, 14);
  EXPECT_EQ(product_.Transcript(), Join({{L"2|Function : Update", L"2|Begin update updater."},
                                         CheckForUpdaterLines(),
                                         missing,
                                         UpdateProductLines(),
                                         missing}));
  EXPECT_THAT(boxes_.Shown(), IsEmpty());
}

TEST_F(UpdateTest, TellsTheUserWhenTheUpdaterCannotBeLaunched) {
  ScriptedShell shell({EndsWith(1), FailsWith(ERROR_CANCELLED)});

  const int result = Manager().Update();

  EXPECT_EQ(result, 14);
  EXPECT_EQ(product_.Transcript(),
            Join({UntilUpdate(), {L"4|Fail to launch updater for update : 1223"}}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kCommonErrorText, kCaption)));
}

TEST_F(UpdateTest, TellsTheUserWhenTheUpdaterFails) {
  struct Case {
    DWORD exit_code;
    const wchar_t* line;
  };
  const Case cases[] = {{1, L"2|Updater exit = 1"},
                        {2, L"2|Updater exit = 2"},
                        {259, L"2|Updater exit = 259"},
                        {0xFFFFFFFF, L"2|Updater exit = -1"},
                        {0x80000000, L"2|Updater exit = -2147483648"}};
  std::vector<ShownBox> expected_boxes;
  for (const Case& test_case : cases) {
    product_.ForgetRecords();
    ScriptedShell shell({EndsWith(1), EndsWith(test_case.exit_code)});

    const int result = Manager().Update();

    expected_boxes.push_back(ErrorBoxOf(kCommonErrorText, kCaption));
    EXPECT_EQ(result, 13);
    EXPECT_EQ(product_.Transcript(),
              Join({UntilUpdate(),
                    {L"2|Launch updater success for update.", test_case.line, L"2|Update fail."}}));
    EXPECT_EQ(boxes_.Shown(), expected_boxes);
  }
}

TEST_F(UpdateTest, TakesAnExitCodeThatCannotBeReadForSuccess) {
  ScriptedShell shell({EndsWith(1), EndsUnreadably(), EndsWith(0)});

  const int result = Manager().Update();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(), Join({UntilUpdate(),
                                         {L"2|Launch updater success for update."},
                                         StartSelfUpdateLines(),
                                         {L"2|Launch NHUpdateManager success for self update."}}));
}

TEST_F(UpdateTest, EndsWithoutABoxWhenTheNextStageIsMissing) {
  Remove(kStagedManager);
  ScriptedShell shell({EndsWith(1), EndsWith(0)});

  const int result = Manager().Update();

  EXPECT_EQ(result, 15);
  EXPECT_EQ(product_.Transcript(),
            Join({UntilNextStage(),
                  {L"4|NHUpdateManager.exe not found : {base}\\Updater\\App\\"
                   L"NHUpdateManager\\NHUpdateManager.exe"}}));
  EXPECT_THAT(boxes_.Shown(), IsEmpty());
}

TEST_F(UpdateTest, TellsTheUserWhenTheNextStageCannotBeLaunched) {
  ScriptedShell shell({EndsWith(1), EndsWith(0), FailsWith(ERROR_ACCESS_DENIED)});

  const int result = Manager().Update();

  EXPECT_EQ(result, 16);
  EXPECT_EQ(product_.Transcript(),
            Join({UntilNextStage(), {L"4|Fail to launch NHUpdateManager for self update : 5"}}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kCommonErrorText, kCaption)));
}

class UpdateWithoutElevationTest : public WorkflowTest {
 protected:
  UpdateWithoutElevationTest() : WorkflowTest({.elevated = false}) { AddUpdater(); }
};

TEST_F(UpdateWithoutElevationTest, EndsBeforeAnythingIsLaunched) {
  ScriptedShell shell({});

  const int result = Manager().Update();

  EXPECT_EQ(result, 10);
  EXPECT_EQ(product_.Transcript(),
            Lines({L"2|Function : Update", L"4|Process not been elevated for install."}));
  EXPECT_THAT(boxes_.Shown(), IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
