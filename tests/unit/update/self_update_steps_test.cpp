// The steps of a self update, one after the other.

#include <gtest/gtest.h>

#include "base/paths.h"
#include "tests/unit/update/self_update_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Lines kLaunchedLine = {L"2|Launch NHUpdateManager success for final update."};

TEST_F(SelfUpdateTest, ReplacesTheInstalledCopyAndStartsIt) {
  AddFile(L"\\NHUpdateManager\\Config\\old.json");
  ScriptedShell shell({EndsWith(0)});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(), Join({StoppedLines(), CopyLines(), CopiedLine(),
                                         StartFinalUpdateLines(), kLaunchedLine}));
  EXPECT_THAT(ListTree(product_.Base() + L"\\NHUpdateManager"),
              ElementsAre(L"Config\\", L"Config\\NHUpdateManager.Default.json",
                          L"NHUpdateManager.exe", L"NSWLogDynamic64U.dll"));
  EXPECT_THAT(boxes_.Shown(), IsEmpty());
}

TEST_F(SelfUpdateTest, StopsOtherCopiesButNotItself) {
  FakeProcessTable processes({{4242, L"C:\\Elsewhere\\nhupdatemanager.EXE"},
                              {FakeProcessTable::kOwnId, L"C:\\Here\\NHUpdateManager.exe"},
                              {4246, L"C:\\Elsewhere\\Other.exe"}});
  ScriptedShell shell({EndsWith(0)});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 0);
  EXPECT_THAT(processes.Running(), ElementsAre(FakeProcessTable::kOwnId, 4246u));
  EXPECT_EQ(product_.Transcript(),
            Join({{L"2|Function : Self Update",
                   L"2|Target process nhupdatemanager.EXE(4242) found, terminate it.",
                   L"2|Skip terminate current process NHUpdateManager.exe({pid})."},
                  CopyLines(),
                  CopiedLine(),
                  StartFinalUpdateLines(),
                  kLaunchedLine}));
}

TEST_F(SelfUpdateTest, TellsTheUserToCloseACopyThatCannotBeStopped) {
  FakeProcessTable processes(
      {{.id = 4242, .image_path = L"C:\\Elsewhere\\NHUpdateManager.exe", .refuses_to_end = true}});
  ScriptedShell shell({});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 16);
  EXPECT_EQ(product_.Transcript(),
            Lines({L"2|Function : Self Update",
                   L"2|Target process NHUpdateManager.exe(4242) found, terminate it.",
                   L"4|Process NHUpdateManager.exe(4242) still found."}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kNeedStopText, kCaption)));
  EXPECT_THAT(sleeps_.Milliseconds(), IsEmpty());
}

TEST_F(SelfUpdateTest, TellsTheUserWhenTheNextStageIsMissing) {
  Remove(std::wstring(kStagedModule) + L"\\NHUpdateManager.exe");
  ScriptedShell shell({});

  const int result = Manager().SelfUpdate();

  Lines copy_without_program = CopyLines();
  copy_without_program.erase(copy_without_program.begin() + 4);
  EXPECT_EQ(result, 15);
  EXPECT_EQ(product_.Transcript(), Join({StoppedLines(),
                                         copy_without_program,
                                         CopiedLine(),
                                         StartFinalUpdateLines(),
                                         {L"4|NHUpdateManager.exe not found for final update : "
                                          L"{base}\\NHUpdateManager\\"
                                          L"NHUpdateManager.exe"}}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kCommonErrorText, kCaption)));
}

TEST_F(SelfUpdateTest, TellsTheUserWhenTheNextStageCannotBeLaunched) {
  ScriptedShell shell({FailsWith(ERROR_CANCELLED)});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 16);
  EXPECT_EQ(product_.Transcript(),
            Join({StoppedLines(),
                  CopyLines(),
                  CopiedLine(),
                  StartFinalUpdateLines(),
                  {L"4|Fail to launch NHUpdateManager for final update : 1223"}}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kCommonErrorText, kCaption)));
}

class SelfUpdateInTheWrongPlaceTest : public SelfUpdateTest {
 protected:
  // The installed copy, not the staged one.
  SelfUpdateInTheWrongPlaceTest() : SelfUpdateTest(ProductOptions()) {}
};

TEST_F(SelfUpdateInTheWrongPlaceTest, CopiesThreeFoldersUpAllTheSame) {
  const std::wstring target = nhupdate::ParentFolder(product_.Root()) + L"\\NHUpdateManager";
  ScriptedShell shell({EndsWith(0)});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            Join({StoppedLines(), CopyLines(L"{base}\\NHUpdateManager", target), CopiedLine(),
                  LaunchLines(target, L"\\NHUpdateManager.exe", L"-final_update"), kLaunchedLine}));
  EXPECT_THAT(ListTree(target), ElementsAre(L"Config\\", L"Config\\NHUpdateManager.Default.json",
                                            L"NHUpdateManager.exe", L"NSWLogDynamic64U.dll"));
}

class SelfUpdateWithoutElevationTest : public SelfUpdateTest {
 protected:
  SelfUpdateWithoutElevationTest() : SelfUpdateTest({.elevated = false, .module = kStagedModule}) {}
};

TEST_F(SelfUpdateWithoutElevationTest, EndsBeforeAnythingIsStopped) {
  FakeProcessTable processes({{4242, L"C:\\Elsewhere\\NHUpdateManager.exe"}});
  ScriptedShell shell({});

  const int result = Manager().SelfUpdate();

  EXPECT_EQ(result, 10);
  EXPECT_EQ(product_.Transcript(),
            Lines({L"2|Function : Self Update", L"4|Process not been elevated for install."}));
  EXPECT_EQ(processes.Enumerations(), 0);
  EXPECT_THAT(sleeps_.Milliseconds(), IsEmpty());
  EXPECT_THAT(boxes_.Shown(), IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
