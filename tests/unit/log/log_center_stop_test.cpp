// How often the library's "Stop" is called, in every way that its use can end.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "log/log_center.h"
#include "tests/support/captured_console.h"
#include "tests/unit/log/log_library_files.h"

namespace nhupdate_test {
namespace {

using nhupdate::CNSWLogCenter;

struct StopCase {
  const char* name;
  const wchar_t* library;
  int start_result;
  std::function<void(CNSWLogCenter&)> end;
  int stops;
};

const StopCase kStopCases[] = {
    {"destruction alone", L"recording_log", 1, [](CNSWLogCenter&) {}, 1},
    {"stopping before", L"recording_log", 1, [](CNSWLogCenter& center) { center.StopLog(); }, 2},
    {"unloading before", L"recording_log", 1,
     [](CNSWLogCenter& center) { center.UnloadLogLibrary(); }, 1},
    {"the program's normal end", L"recording_log", 1,
     [](CNSWLogCenter& center) {
       center.StopLog();
       center.UnloadLogLibrary();
     },
     2},
    {"unloading twice", L"recording_log", 1,
     [](CNSWLogCenter& center) {
       center.UnloadLogLibrary();
       center.UnloadLogLibrary();
     },
     1},
    {"stopping after unloading", L"recording_log", 1,
     [](CNSWLogCenter& center) {
       center.UnloadLogLibrary();
       center.StopLog();
     },
     1},
    {"stopping twice", L"recording_log", 1,
     [](CNSWLogCenter& center) {
       center.StopLog();
       center.StopLog();
     },
     3},
    {"a library that refused to start", L"recording_log_start_fails", 0,
     [](CNSWLogCenter& center) { center.StopLog(); }, 2},
    // An incomplete library is stopped, though never started, if it can be.
    {"no Start", L"recording_log_without_start", 0, [](CNSWLogCenter&) {}, 0},
    {"no Stop", L"recording_log_without_stop", 0, [](CNSWLogCenter&) {}, 0},
    {"no Flush", L"recording_log_without_flush", 0, [](CNSWLogCenter&) {}, 1},
    {"no WriteLog", L"recording_log_without_write_log", 0, [](CNSWLogCenter&) {}, 1},
    {"no Flush, stopping before", L"recording_log_without_flush", 0,
     [](CNSWLogCenter& center) { center.StopLog(); }, 1},
    {"no Stop, stopping before", L"recording_log_without_stop", 0,
     [](CNSWLogCenter& center) { center.StopLog(); }, 0},
};

TEST(LogCenterStopTest, IsCountedInEveryCase) {
  for (const StopCase& c : kStopCases) {
    const LogLibraryFiles files;
    const CapturedConsole console;
    const std::wstring library = files.Add(c.library);
    {
      CNSWLogCenter center;
      ASSERT_EQ(center.StartLog(library, L"c", L"f"), c.start_result) << c.name;
      c.end(center);
    }

    int stops = 0;
    for (const std::wstring& call : files.Calls()) {
      stops += call == L"Stop" ? 1 : 0;
    }
    EXPECT_EQ(stops, c.stops) << c.name;
    EXPECT_FALSE(IsLoaded(library)) << c.name;
  }
}

TEST(LogCenterStopTest, IsNothingWithoutALibrary) {
  const LogLibraryFiles files;
  const CapturedConsole console;
  {
    CNSWLogCenter center;
    center.StopLog();
    center.UnloadLogLibrary();
  }

  EXPECT_THAT(files.Calls(), testing::IsEmpty());
  EXPECT_EQ(console.Bytes(), "");
}

}  // namespace
}  // namespace nhupdate_test
