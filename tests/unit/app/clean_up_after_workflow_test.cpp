// After which workflows the updater's configuration is deleted.

#include "tests/support/failing_copy.h"
#include "tests/unit/app/program_clean_up_test.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;

class CleanUpAfterWorkflowTest : public ProgramCleanUpTest {};

TEST_F(CleanUpAfterWorkflowTest, NeverFollowsADownload) {
  struct Case {
    bool has_updater;
    std::vector<ShellAnswer> script;
    int result;
  };
  const Case cases[] = {
      {true, {EndsWith(0), EndsWith(0)}, 12},
      {true, {EndsWith(1)}, 11},
      {true, {EndsWith(99)}, 13},
      {false, {}, 14},
  };
  for (const Case& c : cases) {
    InstalledProduct product;
    WriteFileBytes(InstalledConfig(product), "x");
    if (c.has_updater) {
      AddUpdater(product);
    }
    const ScriptedShell shell(c.script);

    EXPECT_EQ(product.RunProgram(L"-download"), c.result);

    EXPECT_TRUE(Exists(InstalledConfig(product))) << c.result;
  }
}

TEST_F(CleanUpAfterWorkflowTest, DoesNotFollowASuccessfulUpdate) {
  InstalledProduct product;
  AddUpdater(product);
  WriteFileBytes(product.App() + L"\\NHUpdateManager\\NHUpdateManager.exe", "not a real program");
  WriteFileBytes(InstalledConfig(product), "x");
  const ScriptedShell shell({EndsWith(1), EndsWith(0), EndsWith(0)});

  EXPECT_EQ(product.RunProgram(L"-update"), 0);

  EXPECT_TRUE(Exists(InstalledConfig(product)));
  EXPECT_EQ(product.Transcript(),
            Join({StartUpLines(),
                  {L"2|Function : Update"},
                  FruitlessRefreshLines(),
                  UpdateProductLines(),
                  {L"2|Launch updater success for update.", L"2|Updater exit = 0"},
                  StartSelfUpdateLines(),
                  {L"2|Launch NHUpdateManager success for self update.", L"2|Return 0"}}));
}

TEST_F(CleanUpAfterWorkflowTest, FollowsAnUpdateThatTheUpdaterFailed) {
  InstalledProduct product;
  AddUpdater(product);
  WriteFileBytes(InstalledConfig(product), "x");
  const ScriptedShell shell({EndsWith(1), EndsWith(5)});

  EXPECT_EQ(product.RunProgram(L"-update"), 13);

  EXPECT_FALSE(Exists(InstalledConfig(product)));
  EXPECT_EQ(
      product.Transcript(),
      Join({StartUpLines(),
            {L"2|Function : Update"},
            FruitlessRefreshLines(),
            UpdateProductLines(),
            {L"2|Launch updater success for update.", L"2|Updater exit = 5", L"2|Update fail."},
            {DeletedLine(), L"2|Return 13"}}));
}

TEST_F(CleanUpAfterWorkflowTest, DoesNotFollowASuccessfulSelfUpdate) {
  InstalledProduct product({.module = kStagedModule});
  WriteFileBytes(product.ExecutablePath(), "not a real program");
  WriteFileBytes(product.Base() + L"\\NHUpdateManager\\NHUpdateManager.exe", "an old one");
  WriteFileBytes(InstalledConfig(product), "x");
  const ScriptedShell shell({EndsWith(0)});

  EXPECT_EQ(product.RunProgram(L"-self_update"), 0);

  EXPECT_TRUE(Exists(InstalledConfig(product)));
}

TEST_F(CleanUpAfterWorkflowTest, FollowsASelfUpdateThatCannotCopy) {
  InstalledProduct product({.module = kStagedModule});
  WriteFileBytes(product.ExecutablePath(), "not a real program");
  AddConfigs(product);
  const FailingCopy copy(ERROR_DISK_FULL);
  const ScriptedShell shell({});

  EXPECT_EQ(product.RunProgram(L"-self_update"), 16);

  EXPECT_FALSE(Exists(InstalledConfig(product)));
  EXPECT_TRUE(Exists(MistakenConfig(product)));
}

TEST_F(CleanUpAfterWorkflowTest, DoesNotFollowASuccessfulFinalUpdate) {
  InstalledProduct product;
  WriteFileBytes(product.App() + L"\\new.txt", "new");
  WriteFileBytes(InstalledConfig(product), "x");

  EXPECT_EQ(product.RunProgram(L"-final_update"), 0);

  EXPECT_TRUE(Exists(InstalledConfig(product)));
  EXPECT_EQ(ReadFileBytes(product.Base() + L"\\new.txt"), "new");
  EXPECT_EQ(product.Transcript(),
            Join({StartUpLines(),
                  {L"2|Function : Final Update"},
                  NothingToStopLines(),
                  GrantedLines(),
                  CopiedNewFileLines(),
                  RegisteredLines(),
                  {L"2|Remove empty folder in path : {base}",
                   L"2|Remove empty folder : {base}\\Updater\\Temp", L"2|Return 0"}}));
}

TEST_F(CleanUpAfterWorkflowTest, FollowsAFinalUpdateThatCannotCopy) {
  InstalledProduct product;
  WriteFileBytes(product.App() + L"\\new.txt", "new");
  WriteFileBytes(InstalledConfig(product), "x");
  const FailingCopy copy(ERROR_DISK_FULL);

  EXPECT_EQ(product.RunProgram(L"-final_update"), 2);

  EXPECT_FALSE(Exists(InstalledConfig(product)));
}

TEST_F(CleanUpAfterWorkflowTest, DoesNotFollowAnInstallationThatCannotCopy) {
  InstalledProduct product;
  WriteFileBytes(product.App() + L"\\new.txt", "new");
  WriteFileBytes(InstalledConfig(product), "x");
  const FailingCopy copy(ERROR_DISK_FULL);

  EXPECT_EQ(product.RunProgram(L"-install"), 2);

  EXPECT_TRUE(Exists(InstalledConfig(product)));
}

}  // namespace
}  // namespace nhupdate_test
