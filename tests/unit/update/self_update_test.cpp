#include "base/paths.h"
#include "tests/support/failing_copy.h"
#include "tests/support/fake_process_table.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

constexpr wchar_t kStagedModule[] = L"\\Updater\\App\\NHUpdateManager";

const std::vector<std::wstring> kProgramFiles = {L"Config\\",
                                                 L"Config\\NHUpdateManager.Default.json",
                                                 L"NHUpdateManager.exe", L"NSWLogDynamic64U.dll"};

class SelfUpdateTest : public WorkflowTest {
 protected:
  explicit SelfUpdateTest(const ProductOptions& options = {.module = kStagedModule})
      : WorkflowTest(options) {
    AddFile(options.module + L"\\NHUpdateManager.exe");
  }

  int Run() override { return Manager().SelfUpdate(); }

  [[nodiscard]] std::wstring Installed() const { return product_.Base() + L"\\NHUpdateManager"; }

  FakeProcessTable no_processes_;
};

TEST_F(SelfUpdateTest, ReplacesTheInstalledCopyASecondAfterItStoppedOthersAndStartsIt) {
  const std::wstring executable = Installed() + L"\\NHUpdateManager.exe";
  AddFile(L"\\NHUpdateManager\\Config\\old.json");
  const RecordedSleeps sleeps([&](int) { EXPECT_FALSE(Exists(executable)); });

  TellRun({EndsWith(0)});

  EXPECT_THAT(sleeps.Milliseconds(), ElementsAre(1000u));
  EXPECT_EQ(ListTree(Installed()), kProgramFiles);
}

TEST_F(SelfUpdateTest, StopsOtherCopiesButNotItself) {
  const FakeProcessTable processes({{4242, L"C:\\Elsewhere\\nhupdatemanager.EXE"},
                                    {FakeProcessTable::kOwnId, L"C:\\Here\\NHUpdateManager.exe"},
                                    {4246, L"C:\\Elsewhere\\Other.exe"}});

  TellRun({EndsWith(0)});

  EXPECT_THAT(processes.Running(), ElementsAre(FakeProcessTable::kOwnId, 4246u));
}

TEST_F(SelfUpdateTest, TellsTheUserToCloseACopyThatCannotBeStopped) {
  const FakeProcessTable processes(
      {{.id = 4242, .image_path = L"C:\\Elsewhere\\NHUpdateManager.exe", .refuses_to_end = true}});

  TellRun({});
}

TEST_F(SelfUpdateTest, TellsTheUserWhenTheNextStageCannotBeStarted) {
  TellRun("NotLaunched", {FailsWith(ERROR_CANCELLED)});
  Remove(std::wstring(kStagedModule) + L"\\NHUpdateManager.exe");
  Remove(L"\\NHUpdateManager\\NHUpdateManager.exe");
  TellRun("Missing", {});
}

TEST_F(SelfUpdateTest, TriesTheCopyUpToThreeTimes) {
  for (const int failures : {1, 2}) {
    const FailingCopy copy(ERROR_SHARING_VIOLATION,
                           [&](const std::wstring&) { return copy.Calls() <= failures; });
    TellRun(std::to_string(failures), {EndsWith(0)});
  }
}

TEST_F(SelfUpdateTest, GivesUpTheCopyAfterThreeFailuresAndTheirSleeps) {
  const FailingCopy copy(ERROR_SHARING_VIOLATION);
  // The log is told of each sleep before it, the user after the last one.
  const RecordedSleeps sleeps([&](int number) {
    EXPECT_THAT(boxes_.Shown(), IsEmpty());
    EXPECT_EQ(product_.Transcript().back(),
              number == 1 ? L"2|Target process NHUpdateManager.exe not found."
                          : L"3|Fail to copy NHUpdateManager, sleep and try again.");
  });

  TellRun({});

  EXPECT_THAT(sleeps.Milliseconds(), ElementsAre(1000u, 3000u, 3000u, 3000u));
}

class MisplacedSelfUpdateTest : public SelfUpdateTest {
 protected:
  // Runs as the installed copy instead of the staged one.
  MisplacedSelfUpdateTest() : SelfUpdateTest(ProductOptions()) {}
};

TEST_F(MisplacedSelfUpdateTest, CopiesThreeFoldersUpAllTheSame) {
  const std::wstring target = ParentFolder(product_.Root()) + L"\\NHUpdateManager";
  const ScriptedShell shell({EndsWith(0)});

  EXPECT_EQ(Run(), 0);

  ASSERT_EQ(shell.Launches().size(), 1u);
  EXPECT_EQ(shell.Launches()[0].file, target + L"\\NHUpdateManager.exe");
  EXPECT_EQ(shell.Launches()[0].folder, target);
  EXPECT_EQ(ListTree(target), kProgramFiles);
}

TEST_F(SelfUpdateTest, EndsBeforeAnythingIsStoppedWithoutElevation) {
  LoseElevation();

  TellRun({});

  EXPECT_EQ(no_processes_.Enumerations(), 0);
}

}  // namespace
}  // namespace nhupdate_test
