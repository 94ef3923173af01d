#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "log_library/record_time.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

TEST(LogHeaderTest, TellsWhoWritesOnWhatSystem) {
  const LogPlace place;
  LoadedLogLibrary library;

  std::ignore = library.StartWithVersion("7.8.9", place.Folder());

  const auto records = ReadRecords(place.CurrentFile());
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].tag, "NSWLogDynamic64U");
  EXPECT_EQ(records[0].level, "INFO");
  const std::string& text = records[0].text;
  EXPECT_THAT(text, ContainsRegex("^Log library [0-9]+\\.[0-9]+\\.[0-9]+, program version 7.8.9,"));
  EXPECT_THAT(text, HasSubstr("\\log_library_tests.exe, Windows "));
  EXPECT_THAT(text, ContainsRegex("Windows [0-9]+\\.[0-9]+\\.[0-9]+, time zone [A-Z]"));
  EXPECT_THAT(text, HasSubstr("(UTC" + nhupdate::FormatUtcOffset(
                                           nhupdate::CurrentRecordTime().utc_offset_minutes)));
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
