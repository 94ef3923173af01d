#include "install/process_stop.h"

#include "tests/support/fake_process_table.h"
#include "tests/support/quiet_desktop.h"
#include "tests/support/recorded_log.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

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

TEST_F(ProcessStopTest, EndsAllOthersOfThatNameAndTellsWhichStay) {
  const struct {
    const char* situation;
    std::vector<FakeProcess> processes;
    bool all_ended;
    std::vector<std::wstring> records;
  } cases[] = {
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
       {{.id = 8, .device_path = L"\\Device\\Volume1\\target.exe"}},
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

  for (const auto& c : cases) {
    log_.ForgetRecords();
    const FakeProcessTable table(c.processes);

    EXPECT_EQ(TerminateProcessByName(L"target.exe", log_.Log()), c.all_ended) << c.situation;

    EXPECT_EQ(log_.Records(), c.records) << c.situation;
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
}

TEST_F(ProcessStopTest, NeverOpensTheIdleProcessForTermination) {
  const FakeProcessTable table({{.id = 0, .image_path = L"C:\\target.exe"}});

  EXPECT_FALSE(TerminateProcessByName(L"target.exe", log_.Log()));

  EXPECT_THAT(table.Calls(), Not(Contains(L"Open 0x100001 0 0")));
  EXPECT_THAT(log_.Records(),
              ElementsAre(FoundLine(L"target.exe(0)"), StillFoundLine(L"target.exe(0)")));
}

TEST_F(ProcessStopTest, SeesNoProcessesWhenTheyCannotBeListed) {
  FakeProcessTable table({{.id = 8, .image_path = L"C:\\target.exe"}});
  table.FailToEnumerate();

  EXPECT_TRUE(TerminateProcessByName(L"target.exe", log_.Log()));

  EXPECT_THAT(table.Calls(), ElementsAre(L"Enumerate 4096", L"Enumerate 4096"));
  EXPECT_THAT(log_.Records(), ElementsAre(kNoneFoundLine));
}

TEST_F(ProcessStopTest, ExaminesTheFirst1024Processes) {
  std::vector<FakeProcess> crowd;
  for (DWORD number = 1; number <= 1500; ++number) {
    const bool is_target = number == 1024 || number == 1025;
    crowd.push_back(
        {.id = 4 * number, .image_path = is_target ? L"C:\\target.exe" : L"C:\\other.exe"});
  }
  const FakeProcessTable table(crowd);

  // The second pass sees the other one too, since the first target is gone by then.
  EXPECT_FALSE(TerminateProcessByName(L"target.exe", log_.Log()));

  EXPECT_THAT(log_.Records(),
              ElementsAre(FoundLine(L"target.exe(4096)"), StillFoundLine(L"target.exe(4100)")));
}

class StopUpdateManagersTest : public ProcessStopTest {
 protected:
  const QuietDesktop desktop_;
  const StringTable strings_ = {{L"KEY_UPDATE_TITLE", L"Title"},
                                {L"KEY_FAIL_NEED_STOP_NHUPDATEMANAGER", L"Stop it."}};
};

TEST_F(StopUpdateManagersTest, ShowsNoBoxWhenAllOthersAreGone) {
  const FakeProcessTable table(
      {{.id = FakeProcessTable::kOwnId, .image_path = L"C:\\new\\NHUpdateManager.exe"},
       {.id = 8, .image_path = L"C:\\nhupdatemanager.EXE"}});

  EXPECT_TRUE(StopUpdateManagers(strings_, log_.Log()));

  EXPECT_THAT(log_.Records(),
              ElementsAre(L"2|Skip terminate current process NHUpdateManager.exe({pid}).",
                          FoundLine(L"nhupdatemanager.EXE(8)")));
  EXPECT_TRUE(desktop_.Boxes().empty());
}

TEST_F(StopUpdateManagersTest, TellsTheUserOnceWhenOthersStay) {
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"C:\\NHUpdateManager.exe", .ends_when_terminated = false},
       {.id = 12, .image_path = L"C:\\NHUpdateManager.exe", .can_be_terminated = false}});

  EXPECT_FALSE(StopUpdateManagers(strings_, log_.Log()));

  EXPECT_THAT(log_.Records(), ElementsAre(FoundLine(L"NHUpdateManager.exe(8)"),
                                          FoundLine(L"NHUpdateManager.exe(12)"),
                                          StillFoundLine(L"NHUpdateManager.exe(8)"),
                                          StillFoundLine(L"NHUpdateManager.exe(12)"),
                                          L"4|Fail to terminate NHUpdateManager."));
  EXPECT_THAT(desktop_.Boxes(), ElementsAre(ErrorBoxOf(L"Stop it.", L"Title")));
  EXPECT_TRUE(desktop_.Sleeps().empty());
}

// The box may stand there for days, and the log has to tell meanwhile why.
TEST_F(StopUpdateManagersTest, TellsTheLogBeforeTheUser) {
  const FakeProcessTable table(
      {{.id = 8, .image_path = L"C:\\NHUpdateManager.exe", .can_be_terminated = false}});
  std::wstring last_record;
  INTERPOSER(MessageBoxW) box([&](auto...) {
    last_record = log_.Records().back();
    return IDOK;
  });

  EXPECT_FALSE(StopUpdateManagers(strings_, log_.Log()));

  EXPECT_EQ(last_record, L"4|Fail to terminate NHUpdateManager.");
}

}  // namespace
}  // namespace nhupdate_test
