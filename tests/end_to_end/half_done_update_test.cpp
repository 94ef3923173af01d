// What docs/log.md says of updates that were broken off, tried: the commands that tell how far one
// came, and those that repair it. They are given to the command prompt as they stand there.

#include <string>
#include <vector>

#include "base/existence.h"
#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/program_end.h"
#include "tests/support/files.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr wchar_t kRuns[] = LR"(find "] Function : " "%LOG%")";
constexpr wchar_t kReturns[] = LR"(find "] Return " "%LOG%")";
constexpr wchar_t kSelfCopies[] = LR"(find "] Copy NHUpdateManager success." "%LOG%")";
constexpr wchar_t kDeletions[] = LR"(find "] Delete OK : " "%LOG%")";
constexpr wchar_t kCopies[] = LR"(find "] Copy OK : " "%LOG%")";
constexpr wchar_t kCopyEnds[] = LR"(find "] Copy complete." "%LOG%")";
constexpr wchar_t kStagedVersion[] = LR"(type "%HUB%\Updater\App\Version.txt")";
constexpr wchar_t kStagedProgram[] = LR"(dir /b "%HUB%\Updater\App\NHUpdateManager\*.exe")";
constexpr wchar_t kUpdate[] = LR"("%HUB%\NHUpdateManager\NHUpdateManager.exe" -update)";
constexpr wchar_t kSelfUpdate[] =
    LR"("%HUB%\Updater\App\NHUpdateManager\NHUpdateManager.exe" -self_update)";
constexpr wchar_t kFinalUpdate[] = LR"("%HUB%\NHUpdateManager\NHUpdateManager.exe" -final_update)";
constexpr wchar_t kInstall[] = LR"("%HUB%\NHUpdateManager\NHUpdateManager.exe" -install)";

class HalfDoneUpdateTest : public EndToEndTest {
 protected:
  HalfDoneUpdateTest() { StartAfresh(); }

  void StartAfresh() const {
    RemoveTree(hub_.Root());
    RemoveTree(hub_.DataFolder() + L"\\Corvane");
    hub_.PutProduct();
    hub_.StageRelease();
    WriteFileBytes(hub_.Base() + L"\\Plugins\\old.dll", "gone in 2.0.0");
    hub_.Script(L"check NIMBAHUB", {.exit_code = 1});
    hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
    hub_.Script(L"NIMBAHUB", {.exit_code = 0, .stage = hub_.Release()});
    hub_.Script(L"NIMBACS", {.exit_code = 4});
  }

  // Breaks the run off before the first of its changes behind that record. It has to be among so
  // many: a run that isn't broken off takes long.
  void BreakOffBehind(const std::string& record, const std::wstring& executable,
                      const std::wstring& arguments, int most_changes) {
    const auto has_come_there = [&](int change) {
      StartAfresh();
      const ProgramRun run = RunToTheEnd(
          {.executable = executable, .arguments = arguments, .end_before_change = change});
      return run.exit_code != kEndedByTest || LogHolds(hub_, record);
    };
    int before = 0;
    int behind = most_changes;
    while (behind - before > 1) {
      const int middle = (before + behind) / 2;
      (has_come_there(middle) ? behind : before) = middle;
    }
    ASSERT_TRUE(has_come_there(behind));
    ASSERT_TRUE(LogHolds(hub_, record));
    ASSERT_FALSE(LogHolds(hub_, "] Return "));
  }

  // In the command prompt, elevated, as the page says.
  [[nodiscard]] ProgramRun Prompt(const std::wstring& command) const {
    ::SetEnvironmentVariableW(L"HUB", hub_.Base().c_str());
    ::SetEnvironmentVariableW(L"LOG", hub_.LogFile().c_str());
    return RunToTheEnd({.executable = L"C:\\windows\\system32\\cmd.exe",
                        .arguments = L"/s /c \"" + command + L"\""});
  }

  // What the command finds in the log: the records without what stands before their texts.
  [[nodiscard]] std::vector<std::string> Found(const std::wstring& command) const {
    const std::string output = Prompt(command).output;
    const std::string tag = "[NHUpdateManager] ";
    std::vector<std::string> texts;
    for (std::size_t at = output.find(tag); at != std::string::npos; at = output.find(tag, at)) {
      at += tag.size();
      texts.push_back(output.substr(at, output.find_first_of("\r\n", at) - at));
    }
    return texts;
  }

  [[nodiscard]] std::string Installed(const std::wstring& file) const {
    return ReadFileBytes(hub_.Base() + file);
  }

  [[nodiscard]] bool IsNewProgram() const {
    return Installed(L"\\NHUpdateManager\\NHUpdateManager.exe") ==
           ReadFileBytes(hub_.StagedManager());
  }

  void ExpectTheNewVersion() const {
    EXPECT_THAT(Installed(L"\\Version.txt"), HasSubstr("2.0.0"));
    EXPECT_EQ(Installed(L"\\NHHub.exe"), "hub 2.0.0");
    EXPECT_EQ(Installed(L"\\Plugins\\Cameras\\cam.dll"), "cameras 2.0.0");
    EXPECT_EQ(Installed(L"\\Plugins\\sound.dll"), "sound 2.0.0");
    EXPECT_FALSE(nhupdate::Exists(hub_.Base() + L"\\Plugins\\old.dll"));
  }

  void ExpectAWholeStagedVersion() const {
    EXPECT_THAT(Prompt(kStagedVersion).output, HasSubstr("Version=2.0.0"));
    EXPECT_THAT(Prompt(kStagedProgram).output, HasSubstr("NHUpdateManager.exe"));
  }
};

TEST_F(HalfDoneUpdateTest, InTheFirstStageIsRepairedByTheUpdate) {
  BreakOffBehind("] Launch updater success for update.", hub_.Manager(), L"-update", 16);

  EXPECT_THAT(Found(kRuns), ElementsAre("Function : Update"));
  EXPECT_THAT(Found(kReturns), IsEmpty());

  EXPECT_EQ(Prompt(kUpdate).exit_code, 0U);

  EXPECT_TRUE(IsNewProgram());
  ExpectTheNewVersion();
}

TEST_F(HalfDoneUpdateTest, InTheSecondStageIsRepairedByTheStagedProgram) {
  BreakOffBehind("\\NHUpdateManager\\Config to ", hub_.StagedManager(), L"-self_update", 24);

  EXPECT_THAT(Found(kRuns), ElementsAre("Function : Self Update"));
  EXPECT_THAT(Found(kReturns), IsEmpty());
  EXPECT_THAT(Found(kSelfCopies), IsEmpty());
  ExpectAWholeStagedVersion();

  EXPECT_EQ(Prompt(kSelfUpdate).exit_code, 0U);

  EXPECT_THAT(Found(kSelfCopies), ElementsAre("Copy NHUpdateManager success."));
  EXPECT_TRUE(IsNewProgram());
  ExpectTheNewVersion();
}

TEST_F(HalfDoneUpdateTest, BetweenTheStagesIsRepairedByTheLastOne) {
  BreakOffBehind("] Copy NHUpdateManager success.", hub_.StagedManager(), L"-self_update", 24);

  EXPECT_THAT(Found(kRuns), ElementsAre("Function : Self Update"));
  EXPECT_THAT(Found(kSelfCopies), ElementsAre("Copy NHUpdateManager success."));
  EXPECT_TRUE(IsNewProgram());
  EXPECT_EQ(Installed(L"\\NHHub.exe"), "hub 1.0.0");

  EXPECT_EQ(Prompt(kFinalUpdate).exit_code, 0U);

  ExpectTheNewVersion();
}

TEST_F(HalfDoneUpdateTest, WithoutTopLevelFilesIsRepairedByTheLastStage) {
  BreakOffBehind("] Delete OK : " + ToUtf8(hub_.Base() + L"\\Version.txt"), hub_.Manager(),
                 L"-final_update", 32);

  EXPECT_THAT(Found(kRuns), ElementsAre("Function : Final Update"));
  EXPECT_THAT(Found(kReturns), IsEmpty());
  EXPECT_THAT(Found(kDeletions), Contains(HasSubstr("\\NHHub.exe")));
  EXPECT_THAT(Found(kCopies), IsEmpty());
  ExpectAWholeStagedVersion();

  EXPECT_EQ(Prompt(kFinalUpdate).exit_code, 0U);

  ExpectTheNewVersion();
}

TEST_F(HalfDoneUpdateTest, WithANewVersionFileAndAnOldPlugInIsRepairedByTheLastStage) {
  BreakOffBehind("\\Version.txt => ", hub_.Manager(), L"-final_update", 32);

  EXPECT_THAT(Found(kReturns), IsEmpty());
  EXPECT_THAT(Found(kCopies), Contains(HasSubstr("\\Version.txt => ")));
  EXPECT_THAT(Found(kCopyEnds), IsEmpty());
  EXPECT_EQ(Installed(L"\\Plugins\\Cameras\\cam.dll"), "cameras 1.0.0");
  // The product doesn't ask for the update again.
  EXPECT_EQ(Run(L"-download").exit_code, 11U);

  EXPECT_EQ(Prompt(kFinalUpdate).exit_code, 0U);

  EXPECT_THAT(Found(kReturns), ElementsAre("Return 11", "Return 0"));
  EXPECT_THAT(Found(kCopyEnds), Not(IsEmpty()));
  ExpectTheNewVersion();
}

TEST_F(HalfDoneUpdateTest, OfAnInstallationIsRepairedByIt) {
  BreakOffBehind("] Delete OK : ", hub_.Manager(), L"-install", 32);

  EXPECT_THAT(Found(kRuns), ElementsAre("Function : Install"));

  EXPECT_EQ(Prompt(kInstall).exit_code, 0U);

  ExpectTheNewVersion();
}

TEST_F(HalfDoneUpdateTest, WhoseStagedVersionIsGoneShowsSo) {
  RemoveTree(hub_.App());

  EXPECT_THAT(Prompt(kStagedVersion).output, Not(HasSubstr("Version=")));
  EXPECT_THAT(Prompt(kStagedProgram).output, Not(HasSubstr("NHUpdateManager.exe")));
}

}  // namespace
}  // namespace nhupdate_test
