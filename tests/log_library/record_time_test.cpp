#include "log_library/record_time.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

std::string Text(const RecordTime& time) {
  std::string text = "at ";
  AppendRecordTime(text, time);
  return text;
}

FILETIME FileTimeOf(const SYSTEMTIME& time) {
  FILETIME file_time = {};
  EXPECT_TRUE(::SystemTimeToFileTime(&time, &file_time));
  return file_time;
}

// One moment in several places. Windows gives the time in UTC and turns it into local time; the
// product works out how far apart the two are.
TEST(RecordTimeTest, IsTheLocalOneWithItsDistanceFromUtc) {
  const SYSTEMTIME utc = {2026, 3, 0, 1, 2, 14, 3, 123};
  const struct {
    SYSTEMTIME local;
    const char* text;
  } cases[] = {
      {utc, "2026-03-01T02:14:03.123+00:00"},
      {{2026, 3, 0, 1, 3, 14, 3, 123}, "2026-03-01T03:14:03.123+01:00"},
      {{2026, 3, 0, 1, 7, 59, 3, 123}, "2026-03-01T07:59:03.123+05:45"},
      {{2026, 2, 0, 28, 22, 44, 3, 123}, "2026-02-28T22:44:03.123-03:30"},
      {{2026, 3, 0, 1, 16, 14, 3, 123}, "2026-03-01T16:14:03.123+14:00"},
  };
  for (const auto& test : cases) {
    INTERPOSER(GetSystemTimeAsFileTime) clock([&](FILETIME* now) { *now = FileTimeOf(utc); });
    INTERPOSER(FileTimeToLocalFileTime) zone([&](const FILETIME*, FILETIME* local) -> BOOL {
      *local = FileTimeOf(test.local);
      return TRUE;
    });

    EXPECT_EQ(Text(CurrentRecordTime()), std::string("at ") + test.text);
  }
}

TEST(RecordTimeTest, IsPaddedInAllItsParts) {
  EXPECT_EQ(Text({{2027, 1, 6, 2, 3, 4, 5, 6}, -5}), "at 2027-01-02T03:04:05.006-00:05");
}

}  // namespace
}  // namespace nhupdate_test
