#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "log_library/record_time.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

using testing::EndsWith;
using testing::MatchesRegex;

TEST(LogHeaderTest, TellsWhoWritesOnWhatSystem) {
  const LogPlace place;
  LoadedLogLibrary library;

  std::ignore = library.StartWithVersion("7.8.9", place.Folder());

  const auto records = ReadRecords(place.CurrentFile());
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].tag, "NSWLogDynamic64U");
  EXPECT_EQ(records[0].level, "INFO");
  const std::string offset =
      nhupdate::FormatUtcOffset(nhupdate::CurrentRecordTime().utc_offset_minutes);
  // GoogleTest's small regular expressions know digits as \d and no groups or sets.
  EXPECT_THAT(records[0].text, MatchesRegex("Log library \\d+\\.\\d+\\.\\d+, "
                                            "program version 7.8.9, "
                                            "executable \\w:\\\\.*\\\\log_library_tests.exe, "
                                            "Windows \\d+\\.\\d+\\.\\d+, "
                                            "time zone \\w.* \\(UTC.\\d\\d:\\d\\d\\)"));
  EXPECT_THAT(records[0].text, EndsWith("(UTC" + offset + ")"));
}

TEST(LogHeaderTest, IsWrittenWhateverTheLevel) {
  const LogPlace place("Level=4\n");
  LoadedLogLibrary library;

  std::ignore = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(ReadRecords(place.CurrentFile()).size(), 1u);
}

TEST(LogHeaderTest, AcceptsAnyVersionText) {
  const LogPlace place;
  LoadedLogLibrary library;

  EXPECT_EQ(library.StartWithVersion(nullptr, place.Folder()), 0);
  EXPECT_EQ(library.StartWithVersion("", place.Folder()), 0);
  EXPECT_EQ(library.StartWithVersion("1\n\xFF%s", place.Folder()), 0);

  EXPECT_EQ(ReadRecords(place.CurrentFile()).size(), 3u);
}

}  // namespace
}  // namespace nhupdate_test
