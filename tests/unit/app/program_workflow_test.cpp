// Which workflow runs, what is logged around it, and how the program ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/existence.h"
#include "base/windows.h"
#include "tests/support/captured_console.h"
#include "tests/support/expected_records.h"
#include "tests/support/fake_log_library.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/support/quiet_system.h"

#include <objbase.h>  // needs <windows.h> first

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;
using testing::IsEmpty;

const Lines kNotElevatedLine = {L"4|Process not been elevated for install."};
const Lines kNoConfigLine = {L"4|Updater config file note found : {base}\\Updater\\Config\\ut.ini"};
const Lines kReturn10Line = {L"2|Return 10"};

class ProgramWorkflowTest : public testing::Test {
 protected:
  CapturedConsole console_;
  QuietSystem system_;
};

TEST_F(ProgramWorkflowTest, IsTheOneThatTheSwitchesAskFor) {
  // Without elevation, and without an updater, every workflow ends at once.
  const Lines download = Join({{L"2|Function : Check and background download"},
                               CheckForUpdateLines(),
                               {L"4|Update.exe not found : "
                                L"{base}\\Updater\\Updater.exe",
                                L"2|Return 14"}});
  const Lines install = Join({{L"2|Function : Install"}, kNotElevatedLine, kReturn10Line});
  const Lines update =
      Join({{L"2|Function : Update"}, kNotElevatedLine, kNoConfigLine, kReturn10Line});
  const Lines self_update = Join({{L"2|Function : Self Update"},
                                  kNotElevatedLine,
                                  {L"4|Updater config file note found : {root}\\Config\\ut.ini"},
                                  kReturn10Line});
  const Lines final_update =
      Join({{L"2|Function : Final Update"}, kNotElevatedLine, kNoConfigLine, kReturn10Line});
  struct Case {
    const wchar_t* arguments;
    const Lines& workflow;
    int result;
  };
  const Case cases[] = {
      {L"-download", download, 14},
      {L"/DOWNLOAD", download, 14},
      {L"-install", install, 10},
      {L"-INSTALL", install, 10},
      {L"-update", update, 10},
      {L"/UPDATE", update, 10},
      {L"-self_update", self_update, 10},
      {L"/Self_Update", self_update, 10},
      {L"-final_update", final_update, 10},
      {L"\"-final_update\"", final_update, 10},
      {L"-install -download", download, 14},
      {L"-final_update -self_update", self_update, 10},
      {L"help -update C:\\x", update, 10},
  };

  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.arguments));
    InstalledProduct product({.elevated = false});

    EXPECT_EQ(product.RunProgram(c.arguments), c.result);

    EXPECT_EQ(product.Transcript(), Join({StartUpLines({.elevated = false}), c.workflow}));
  }
}

TEST_F(ProgramWorkflowTest, LeavesNoTraceWithoutASwitch) {
  for (const wchar_t* arguments : {L"", L"--update", L"update", L"-install:1", L"-uninstall"}) {
    InstalledProduct product;

    EXPECT_EQ(product.RunProgram(arguments), 0) << testing::PrintToString(arguments);

    EXPECT_THAT(product.LogCalls(), IsEmpty());
    EXPECT_THAT(ListTree(product.ProgramData()), IsEmpty());
    EXPECT_EQ(console_.Bytes(), "");
  }
}

TEST_F(ProgramWorkflowTest, LogsAFinalUpdateWithoutElevationWhole) {
  InstalledProduct product({.elevated = false});
  WriteFileBytes(product.Base() + L"\\Updater\\Config\\ut.ini", "x");

  EXPECT_EQ(product.RunProgram(L"-final_update"), 10);

  EXPECT_EQ(product.Transcript(),
            Join({StartUpLines({.elevated = false}),
                  {L"2|Function : Final Update", L"4|Process not been elevated for install.",
                   L"2|Updater config file delete ok : "
                   L"{base}\\Updater\\Config\\ut.ini",
                   L"2|Return 10"}}));
  EXPECT_FALSE(Exists(product.Base() + L"\\Updater\\Config\\ut.ini"));
}

TEST_F(ProgramWorkflowTest, EndsWithTwoStopsOfTheLogAndNothingAfterThem) {
  InstalledProduct product({.elevated = false});

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  const std::vector<LogCall> calls = product.LogCalls();
  ASSERT_GT(calls.size(), 3U);
  EXPECT_EQ(calls.front().entry, L"Start");
  EXPECT_THAT((calls.end() - 3)->arguments, ElementsAre(L"2", L"NHUpdateManager", L"Return 10"));
  EXPECT_EQ((calls.end() - 2)->entry, L"Stop");
  EXPECT_EQ((calls.end() - 1)->entry, L"Stop");
  int stops = 0;
  for (const LogCall& call : calls) {
    stops += call.entry == L"Stop" ? 1 : 0;
    EXPECT_NE(call.entry, L"Flush");
  }
  EXPECT_EQ(stops, 2);
}

TEST_F(ProgramWorkflowTest, UnloadsTheLogBeforeItEndsCom) {
  InstalledProduct product({.elevated = false});
  std::vector<std::string> events;
  FakeLogLibrary library;
  library.on_event = [&](const std::string& event, const std::wstring& details) {
    if (details.find(L"Return") != std::wstring::npos) {
      events.clear();
    }
    events.push_back(event);
  };
  INTERPOSER(CoUninitialize) end_com([&] {
    events.push_back("CoUninitialize");
    end_com.Original()();
  });

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_THAT(events, ElementsAre("WriteLog", "Stop", "Stop", "Free", "CoUninitialize"));
}

}  // namespace
}  // namespace nhupdate_test
