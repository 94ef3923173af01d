// Which workflow runs, what is logged around it, and how the program ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "base/existence.h"
#include "base/windows.h"
#include "tests/support/captured_console.h"
#include "tests/support/fake_log_library.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/unit/app/quiet_system.h"

#include <objbase.h>  // needs <windows.h> first

namespace nhupdate {
namespace {

using nhupdate_test::CapturedConsole;
using nhupdate_test::FakeLogLibrary;
using nhupdate_test::InstalledProduct;
using nhupdate_test::Interposer;
using nhupdate_test::ListTree;
using nhupdate_test::LogCall;
using nhupdate_test::QuietSystem;
using nhupdate_test::WriteFileBytes;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// How many records the start-up writes, without any string file, before the workflow's first.
constexpr std::size_t kStartRecords = 5;

class ProgramWorkflowTest : public testing::Test {
 protected:
  CapturedConsole console_;
  QuietSystem system_;
};

TEST_F(ProgramWorkflowTest, IsTheOneThatTheSwitchesAskFor) {
  struct Case {
    const wchar_t* arguments;
    const wchar_t* heading;
    int result;
  };
  // Without elevation, and without an updater, every workflow ends at once.
  const Case cases[] = {
      {L"-download", L"2|Function : Check and background download", 14},
      {L"/DOWNLOAD", L"2|Function : Check and background download", 14},
      {L"-install", L"2|Function : Install", 10},
      {L"-INSTALL", L"2|Function : Install", 10},
      {L"-update", L"2|Function : Update", 10},
      {L"/UPDATE", L"2|Function : Update", 10},
      {L"-self_update", L"2|Function : Self Update", 10},
      {L"/Self_Update", L"2|Function : Self Update", 10},
      {L"-final_update", L"2|Function : Final Update", 10},
      {L"\"-final_update\"", L"2|Function : Final Update", 10},
      {L"-install -download", L"2|Function : Check and background download", 14},
      {L"-final_update -self_update", L"2|Function : Self Update", 10},
      {L"help -update C:\\x", L"2|Function : Update", 10},
  };

  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.arguments));
    InstalledProduct product({.elevated = false});

    EXPECT_EQ(product.RunProgram(c.arguments), c.result);

    const std::vector<std::wstring> transcript = product.Transcript();
    ASSERT_GT(transcript.size(), kStartRecords + 1);
    EXPECT_EQ(transcript[kStartRecords], c.heading);
    EXPECT_EQ(transcript.back(), L"2|Return " + std::to_wstring(c.result));
    int headings = 0;
    for (const std::wstring& record : transcript) {
      headings += record.starts_with(L"2|Function : ") ? 1 : 0;
    }
    EXPECT_EQ(headings, 1);
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

  EXPECT_THAT(
      product.Transcript(),
      ElementsAre(L"2|Process NOT elevated.", L"2|Steam language setting not found.",
                  L"2|Found System language setting : en-US",
                  L"2|Load strings from "
                  L"{root}\\Nimba Hub\\NHUpdateManager\\Config\\NHUpdateManager.Default.json",
                  L"4|Fail to open string file : "
                  L"{root}\\Nimba Hub\\NHUpdateManager\\Config\\NHUpdateManager.Default.json",
                  L"2|Function : Final Update", L"4|Process not been elevated for install.",
                  L"2|Updater config file delete ok : "
                  L"{root}\\Nimba Hub\\Updater\\Config\\ut.ini",
                  L"2|Return 10"));
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
  Interposer<decltype(::CoUninitialize)> end_com("CoUninitialize", [&] {
    events.push_back("CoUninitialize");
    end_com.Original()();
  });

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_THAT(events, ElementsAre("WriteLog", "Stop", "Stop", "Free", "CoUninitialize"));
}

TEST_F(ProgramWorkflowTest, RunsWithoutALogLibrary) {
  InstalledProduct product({.elevated = false, .log_library = L""});
  WriteFileBytes(product.Base() + L"\\Updater\\Config\\ut.ini", "x");

  EXPECT_EQ(product.RunProgram(L"-update"), 10);

  EXPECT_EQ(console_.Text(),
            L"Fail to load library : " + product.Module() + L"\\NSWLogDynamic64U.dll\n");
  EXPECT_THAT(product.LogCalls(), IsEmpty());
  EXPECT_FALSE(Exists(product.Base() + L"\\Updater\\Config\\ut.ini"));
}

TEST_F(ProgramWorkflowTest, RunsWithAnIncompleteLogLibrary) {
  InstalledProduct product({.elevated = false, .log_library = L"recording_log_without_flush"});

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_EQ(console_.Bytes(), "Fail to load Flush from library\n");
  ASSERT_THAT(product.LogCalls(), SizeIs(1));
  EXPECT_EQ(product.LogCalls().front().entry, L"Stop");
}

TEST_F(ProgramWorkflowTest, WritesToALogLibraryThatRefusedToStart) {
  InstalledProduct product({.elevated = false, .log_library = L"recording_log_start_fails"});

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_EQ(console_.Bytes(), "Log start fail : 7\n");
  EXPECT_THAT(product.Transcript(), Contains(L"2|Return 10"));
}

TEST_F(ProgramWorkflowTest, RunsWithoutAProgramDataFolder) {
  InstalledProduct product({.elevated = false, .has_program_data = false});

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_EQ(product.Transcript().back(), L"2|Return 10");
  EXPECT_THAT(ListTree(product.ProgramData()), IsEmpty());
}

}  // namespace
}  // namespace nhupdate
