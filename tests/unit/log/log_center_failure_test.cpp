// Libraries that are missing, incomplete or unwilling.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "log/log_center.h"
#include "tests/support/captured_console.h"
#include "tests/support/files.h"
#include "tests/unit/log/log_library_files.h"

namespace nhupdate_test {
namespace {

using nhupdate::CNSWLogCenter;
using testing::ElementsAre;
using testing::IsEmpty;

class LogCenterWithABadLibraryTest : public testing::Test {
 protected:
  LogLibraryFiles files_;
  CapturedConsole console_;
  CNSWLogCenter center_;
};

TEST_F(LogCenterWithABadLibraryTest, NamesALibraryThatCannotBeLoaded) {
  const std::wstring missing = files_.Folder() + L"\\missing.dll";
  const std::wstring folder = files_.Folder() + L"\\folder.dll";
  const std::wstring text_file = files_.Folder() + L"\\text.dll";
  const std::wstring empty_file = files_.Folder() + L"\\empty.dll";
  CreateFolders(folder);
  WriteFileBytes(text_file, "This is no library.");
  WriteFileBytes(empty_file, "");

  std::wstring expected;
  for (const std::wstring& library : {missing, folder, text_file, empty_file}) {
    EXPECT_EQ(center_.StartLog(library, L"c", L"f"), 0) << testing::PrintToString(library);
    expected += L"Fail to load library : " + library + L"\n";
    EXPECT_EQ(console_.Text(), expected);
  }

  EXPECT_THAT(files_.Calls(), IsEmpty());
}

TEST_F(LogCenterWithABadLibraryTest, NamesTheFirstMissingEntry) {
  struct Case {
    const wchar_t* library;
    const char* message;
    std::vector<std::wstring> calls;
  };
  const Case cases[] = {
      {L"recording_log_without_start", "Fail to load Start from library\n", {}},
      {L"recording_log_without_stop", "Fail to load Stop from library\n", {}},
      {L"recording_log_without_flush", "Fail to load Flush from library\n", {L"Stop"}},
      {L"recording_log_without_write_log", "Fail to load WriteLog from library\n", {L"Stop"}},
  };

  for (const Case& c : cases) {
    const LogLibraryFiles files;
    const CapturedConsole console;
    const std::wstring library = files.Add(c.library);
    CNSWLogCenter center;

    EXPECT_EQ(center.StartLog(library, L"c", L"f"), 0);
    center.WriteRecord(4, L"tag", L"dropped");

    EXPECT_EQ(console.Bytes(), c.message);
    EXPECT_EQ(files.Calls(), c.calls) << c.message;
    EXPECT_FALSE(IsLoaded(library)) << c.message;
  }
}

TEST_F(LogCenterWithABadLibraryTest, TakesAGoodLibraryAfterABadOne) {
  ASSERT_EQ(center_.StartLog(files_.Folder() + L"\\missing.dll", L"c", L"f"), 0);
  ASSERT_EQ(center_.StartLog(files_.Add(L"recording_log_without_flush"), L"c", L"f"), 0);

  EXPECT_EQ(center_.StartLog(files_.Add(L"recording_log"), L"c", L"f"), 1);

  EXPECT_THAT(files_.Calls(), ElementsAre(L"Stop", L"Start|1.0.0|c|f"));
}

TEST_F(LogCenterWithABadLibraryTest, TellsTheCodeOfALibraryThatRefusesToStart) {
  EXPECT_EQ(center_.StartLog(files_.Add(L"recording_log_start_fails"), L"c", L"f"), 0);

  EXPECT_EQ(console_.Bytes(), "Log start fail : 7\n");
}

TEST_F(LogCenterWithABadLibraryTest, KeepsALibraryThatRefusesToStart) {
  const std::wstring library = files_.Add(L"recording_log_start_fails");
  ASSERT_EQ(center_.StartLog(library, L"c", L"f"), 0);

  center_.WriteRecord(4, L"tag", L"text");

  EXPECT_TRUE(IsLoaded(library));
  EXPECT_THAT(files_.Calls(), ElementsAre(L"Start|1.0.0|c|f", L"WriteLog|4|tag|text"));
}

TEST_F(LogCenterWithABadLibraryTest, CallsALibraryThatRefusedRunningWhenStartedAgain) {
  const std::wstring library = files_.Add(L"recording_log_start_fails");
  ASSERT_EQ(center_.StartLog(library, L"c", L"f"), 0);

  EXPECT_EQ(center_.StartLog(library, L"c", L"f"), 1);

  EXPECT_THAT(files_.Calls(), ElementsAre(L"Start|1.0.0|c|f"));
  EXPECT_EQ(console_.Bytes(), "Log start fail : 7\n");
}

}  // namespace
}  // namespace nhupdate_test
