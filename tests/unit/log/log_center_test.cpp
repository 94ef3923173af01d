#include "log/log_center.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "log/log_level.h"
#include "tests/support/captured_console.h"
#include "tests/unit/log/log_library_files.h"

namespace nhupdate_test {
namespace {

using nhupdate::CNSWLogCenter;
using nhupdate::LogLevel;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class LogCenterTest : public testing::Test {
 protected:
  LogLibraryFiles files_;
  CapturedConsole console_;
  CNSWLogCenter center_;
};

TEST_F(LogCenterTest, StartsTheLibraryWithTheInterfaceVersionAndItsPaths) {
  const std::wstring library = files_.Add(L"recording_log");

  EXPECT_EQ(center_.StartLog(library, L"C:\\100%s\\LogConfig.ini", L"D:\\Log \u00FC"), 1);

  EXPECT_THAT(files_.Calls(), ElementsAre(L"Start|1.0.0|C:\\100%s\\LogConfig.ini|D:\\Log \u00FC"));
  EXPECT_TRUE(IsLoaded(library));
  EXPECT_EQ(console_.Bytes(), "");
}

TEST_F(LogCenterTest, StartsTheLibraryWithEmptyPathsToo) {
  const std::wstring library = files_.Add(L"recording_log");

  EXPECT_EQ(center_.StartLog(library, L"", L""), 1);

  EXPECT_THAT(files_.Calls(), ElementsAre(L"Start|1.0.0||"));
}

TEST_F(LogCenterTest, DoesNothingMoreWhenStartedAgain) {
  const std::wstring library = files_.Add(L"recording_log");
  const std::wstring other = files_.Add(L"recording_log_start_fails");
  ASSERT_EQ(center_.StartLog(library, L"configuration", L"folder"), 1);

  EXPECT_EQ(center_.StartLog(other, L"other", L"other"), 1);

  EXPECT_THAT(files_.Calls(), ElementsAre(L"Start|1.0.0|configuration|folder"));
  EXPECT_FALSE(IsLoaded(other));
}

TEST_F(LogCenterTest, LoadsAndStartsAgainAfterItWasUnloaded) {
  const std::wstring library = files_.Add(L"recording_log");
  ASSERT_EQ(center_.StartLog(library, L"first", L"first"), 1);
  center_.UnloadLogLibrary();

  EXPECT_EQ(center_.StartLog(library, L"second", L"second"), 1);
  center_.WriteRecord(2, L"tag", L"text");

  EXPECT_THAT(files_.Calls(), ElementsAre(L"Start|1.0.0|first|first", L"Stop",
                                          L"Start|1.0.0|second|second", L"WriteLog|2|tag|text"));
}

TEST_F(LogCenterTest, PassesRecordsOnAsTheyAre) {
  ASSERT_EQ(center_.StartLog(files_.Add(L"recording_log"), L"c", L"f"), 1);

  center_.WriteRecord(static_cast<int>(LogLevel::kInformation), L"NHUpdateManager", L"started");
  center_.WriteRecord(static_cast<int>(LogLevel::kWarning), L"tag \u00FC", L"100%s %d \u7E41");
  center_.WriteRecord(static_cast<int>(LogLevel::kError), L"tag", L"two\nlines");
  center_.WriteRecord(-1, L"tag", L"unknown level");

  EXPECT_THAT(files_.Calls(),
              ElementsAre(L"Start|1.0.0|c|f", L"WriteLog|2|NHUpdateManager|started",
                          L"WriteLog|3|tag \u00FC|100%s %d \u7E41",
                          L"WriteLog|4|tag|two\u240Alines", L"WriteLog|-1|tag|unknown level"));
}

TEST_F(LogCenterTest, PassesALongRecordOnWhole) {
  ASSERT_EQ(center_.StartLog(files_.Add(L"recording_log"), L"c", L"f"), 1);
  const std::wstring message(200000, L'\u00FC');

  center_.WriteRecord(2, L"tag", message);

  EXPECT_TRUE(files_.Calls().back() == L"WriteLog|2|tag|" + message);
}

TEST_F(LogCenterTest, DropsRecordsWithoutALibrary) {
  center_.WriteRecord(2, L"tag", L"text");

  EXPECT_THAT(files_.Calls(), IsEmpty());
  EXPECT_EQ(console_.Bytes(), "");
}

TEST_F(LogCenterTest, DropsRecordsAfterTheLibraryWasUnloaded) {
  ASSERT_EQ(center_.StartLog(files_.Add(L"recording_log"), L"c", L"f"), 1);
  center_.UnloadLogLibrary();

  center_.WriteRecord(2, L"tag", L"text");

  EXPECT_THAT(files_.Calls(), ElementsAre(L"Start|1.0.0|c|f", L"Stop"));
}

TEST_F(LogCenterTest, PassesRecordsOnBetweenStopAndUnload) {
  ASSERT_EQ(center_.StartLog(files_.Add(L"recording_log"), L"c", L"f"), 1);
  center_.StopLog();

  center_.WriteRecord(2, L"tag", L"late");

  EXPECT_THAT(files_.Calls(), ElementsAre(L"Start|1.0.0|c|f", L"Stop", L"WriteLog|2|tag|late"));
}

TEST_F(LogCenterTest, NeverFlushesTheLibrary) {
  ASSERT_EQ(center_.StartLog(files_.Add(L"recording_log"), L"c", L"f"), 1);
  center_.WriteRecord(4, L"tag", L"text");
  center_.StopLog();
  center_.UnloadLogLibrary();

  EXPECT_THAT(files_.Calls(), Each(Not(L"Flush")));
}

}  // namespace
}  // namespace nhupdate_test
