#include "install/process_stop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/fake_process_table.h"
#include "tests/support/quiet_desktop.h"
#include "tests/support/recorded_log.h"

namespace nhupdate_test {
namespace {

using nhupdate::StopUpdateManagers;
using nhupdate::TerminateProcessByName;
using testing::ElementsAre;

class ProcessStopTest : public testing::Test {
 protected:
  RecordedLog log_;
};

std::wstring FoundLine(const std::wstring& process) {
  return L"2|Target process " + process + L" found, terminate it.";
}
std::wstring StillFoundLine(const std::wstring& process) {
  return L"4|Process " + process + L" still found.";
}
constexpr wchar_t kNoneFoundLine[] = L"2|Target process target.exe not found.";

struct StopCase {
  const char* situation;
  std::vector<FakeProcess> processes;
  bool all_ended;
  std::vector<std::wstring> records;
};

TEST_F(ProcessStopTest, EndsAllOthersOfThatNameAndTellsWhichStay) {
  const StopCase kCases[] = {
      {"every one of that name",
       {{.id = 4, .image_path = L"C:\\other.exe"},
        {.id = 8, .image_path = L"C:\\A\\target.exe"},
        {.id = 12, .image_path = L"D:\\B\\target.exe"}},
       true,
       {FoundLine(L"target.exe(8)"), FoundLine(L"target.exe(12)")}},
      {"none of that name",
       {{.id = 4, .image_path = L"C:\\target.exe.exe"},
        {.id = 8, .image_path = L"C:\\target.exe\\other.exe"},
        {.id = 12, .image_path = L"C:\\my target.exe"}},
       true,
       {kNoneFoundLine}},
      {"the calling one doesn't count as found",
       {{.id = FakeProcessTable::kOwnId, .image_path = L"C:\\target.exe"}},
       true,
       {L"2|Skip terminate current process target.exe({pid}).", kNoneFoundLine}},
      {"another letter case",
       {{.id = 8, .image_path = L"C:\\tARGET.EXE"}},
       true,
       {FoundLine(L"tARGET.EXE(8)")}},
      {"a name that only the device path tells",
       {{.id = 8, .image_path = L"", .device_path = L"\\Device\\Volume1\\target.exe"}},
       true,
       {FoundLine(L"target.exe(8)")}},
      {"one that may not be read isn't seen",
       {{.id = 8, .image_path = L"C:\\target.exe", .can_be_read = false}},
       true,
       {kNoneFoundLine}},
      {"one that denies its termination",
       {{.id = 8, .image_path = L"C:\\target.exe", .can_be_terminated = false},
        {.id = 12, .image_path = L"C:\\target.exe"}},
       false,
       {FoundLine(L"target.exe(8)"), FoundLine(L"target.exe(12)"),
        StillFoundLine(L"target.exe(8)")}},
      {"two that survive the wait",
       {{.id = 8, .image_path = L"C:\\target.exe", .ends_when_terminated = false},
        {.id = 12, .image_path = L"C:\\target.exe", .ends_when_terminated = false}},
       false,
       {FoundLine(L"target.exe(8)"), FoundLine(L"target.exe(12)"), StillFoundLine(L"target.exe(8)"),
        StillFoundLine(L"target.exe(12)")}},
  };
  for (const StopCase& example : kCases) {
    log_.ForgetRecords();
    const FakeProcessTable table(example.processes);

    EXPECT_EQ(TerminateProcessByName(L"target.exe", log_.Log()), example.all_ended)
        << example.situation;

    EXPECT_EQ(log_.Records(), example.records) << example.situation;
    EXPECT_EQ(table.OpenHandles(), 0) << example.situation;
  }
}

TEST_F(ProcessStopTest, OpensTerminatesWaitsAndClosesThenLooksAgain) {
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"C:\\target.exe"}, {.id = 12, .image_path = L"C:\\other.exe"}});

  EXPECT_TRUE(TerminateProcessByName(L"target.exe", log_.Log()));

  EXPECT_THAT(table.Calls(),
              ElementsAre(L"Enumerate 4096",                                       //
                          L"Open 0x410 0 8", L"QueryImageName 0 260", L"Close 8",  //
                          L"Open 0x100001 0 8", L"Terminate 8 0", L"Wait 8 3000", L"Close 8",
                          L"Open 0x410 0 12", L"QueryImageName 0 260", L"Close 12",  //
                          L"Enumerate 4096",                                         //
                          L"Open 0x410 0 12", L"QueryImageName 0 260", L"Close 12"));
  EXPECT_EQ(table.OpenHandles(), 0);
}

TEST_F(ProcessStopTest, NeverOpensTheIdleProcessForTermination) {
  const FakeProcessTable table({{.id = 0, .image_path = L"C:\\target.exe"}});

  EXPECT_FALSE(TerminateProcessByName(L"target.exe", log_.Log()));

  EXPECT_THAT(table.Calls(), testing::Not(testing::Contains(L"Open 0x100001 0 0")));
  EXPECT_THAT(log_.Records(), ElementsAre(L"2|Target process target.exe(0) found, terminate it.",
                                          L"4|Process target.exe(0) still found."));
}

TEST_F(ProcessStopTest, SeesNoProcessesWhenTheyCannotBeListed) {
  FakeProcessTable table({{.id = 8, .image_path = L"C:\\target.exe"}});
  table.FailToEnumerate();

  EXPECT_TRUE(TerminateProcessByName(L"target.exe", log_.Log()));

  EXPECT_THAT(table.Calls(), ElementsAre(L"Enumerate 4096", L"Enumerate 4096"));
  EXPECT_THAT(log_.Records(), ElementsAre(L"2|Target process target.exe not found."));
}

std::vector<FakeProcess> CrowdWithTargetAt(std::size_t index) {
  std::vector<FakeProcess> crowd;
  for (DWORD number = 0; number < 1500; ++number) {
    crowd.push_back({.id = 4 * (number + 1), .image_path = L"C:\\other.exe"});
  }
  crowd[index].image_path = L"C:\\target.exe";
  return crowd;
}

TEST_F(ProcessStopTest, ExaminesTheThousandAndTwentyFourthProcess) {
  const FakeProcessTable table(CrowdWithTargetAt(1023));

  EXPECT_TRUE(TerminateProcessByName(L"target.exe", log_.Log()));

  EXPECT_THAT(log_.Records(),
              ElementsAre(L"2|Target process target.exe(4096) found, terminate it."));
}

TEST_F(ProcessStopTest, ExaminesNoFurtherProcess) {
  const FakeProcessTable table(CrowdWithTargetAt(1024));

  EXPECT_TRUE(TerminateProcessByName(L"target.exe", log_.Log()));

  EXPECT_THAT(log_.Records(), ElementsAre(L"2|Target process target.exe not found."));
}

class StopUpdateManagersTest : public ProcessStopTest {
 protected:
  const nhupdate::StringTable strings_ = {{L"KEY_UPDATE_TITLE", L"Title"},
                                          {L"KEY_FAIL_NEED_STOP_NHUPDATEMANAGER", L"Stop it."}};
};

TEST_F(StopUpdateManagersTest, ShowsNoBoxWhenAllOthersAreGone) {
  const QuietDesktop desktop;
  const FakeProcessTable table(
      {{.id = FakeProcessTable::kOwnId, .image_path = L"C:\\new\\NHUpdateManager.exe"},
       {.id = 8, .image_path = L"C:\\nhupdatemanager.EXE"}});

  EXPECT_TRUE(StopUpdateManagers(strings_, log_.Log()));

  EXPECT_THAT(log_.Records(),
              ElementsAre(L"2|Skip terminate current process NHUpdateManager.exe({pid}).",
                          L"2|Target process nhupdatemanager.EXE(8) found, terminate it."));
  EXPECT_TRUE(desktop.Boxes().empty());
}

TEST_F(StopUpdateManagersTest, TellsTheUserOnceWhenOthersStay) {
  const QuietDesktop desktop;
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"C:\\NHUpdateManager.exe", .ends_when_terminated = false},
       {.id = 12, .image_path = L"C:\\NHUpdateManager.exe", .can_be_terminated = false}});

  EXPECT_FALSE(StopUpdateManagers(strings_, log_.Log()));

  EXPECT_THAT(log_.Records(),
              ElementsAre(L"2|Target process NHUpdateManager.exe(8) found, terminate it.",
                          L"2|Target process NHUpdateManager.exe(12) found, terminate it.",
                          L"4|Process NHUpdateManager.exe(8) still found.",
                          L"4|Process NHUpdateManager.exe(12) still found.",
                          L"4|Fail to terminate NHUpdateManager."));
  EXPECT_THAT(desktop.Boxes(), ElementsAre(ErrorBoxOf(L"Stop it.", L"Title")));
  EXPECT_TRUE(desktop.Sleeps().empty());
}

}  // namespace
}  // namespace nhupdate_test
