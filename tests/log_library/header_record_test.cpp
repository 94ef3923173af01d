#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "log_library/record_time.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

TEST(LogHeaderTest, TellsWhoWritesOnWhatSystem) {
  const LogPlace place;
  LoadedLogLibrary library;

  const int result = library.StartWithVersion("7.8.9", place.Folder());

  EXPECT_EQ(result, 0);
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

TEST(LogHeaderTest, SaysThatTheVersionOfWindowsIsUnknown) {
  const LogPlace place;
  LoadedLogLibrary library;
  int result = 1;
  {
    Interposer<decltype(::GetProcAddress)> entry(
        library.Module(), "GetProcAddress", [&](HMODULE module, const char* name) -> FARPROC {
          return name == std::string_view("RtlGetVersion") ? nullptr
                                                           : entry.Original()(module, name);
        });
    result = library.Start(place.Settings(), place.Folder());
  }

  EXPECT_EQ(result, 0);
  const auto records = ReadRecords(place.CurrentFile());
  ASSERT_EQ(records.size(), 1u);
  EXPECT_THAT(records[0].text, HasSubstr(", Windows of unknown version, time zone "));
}

TEST(LogHeaderTest, IsWrittenWhateverTheLevel) {
  const LogPlace place("Level=4\n");
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 0);
  const auto records = ReadRecords(place.CurrentFile());
  ASSERT_EQ(records.size(), 1u);
  EXPECT_THAT(records[0].text, StartsWith("Log library "));
}

TEST(LogHeaderTest, HoldsTheWholeOfALongExecutablePath) {
  const LogPlace place;
  LoadedLogLibrary library;
  const std::wstring long_path = L"C:\\" + std::wstring(700, L'p') + L"\\long.exe";
  int result = 1;
  {
    Interposer<decltype(::GetModuleFileNameW)> name(
        library.Module(), "GetModuleFileNameW", [&](HMODULE, wchar_t* path, DWORD size) -> DWORD {
          const std::size_t room = size - 1;  // for the text without its end
          const std::wstring cut = long_path.substr(0, room);
          std::copy_n(cut.c_str(), cut.size() + 1, path);
          ::SetLastError(long_path.size() > room ? ERROR_INSUFFICIENT_BUFFER : ERROR_SUCCESS);
          return long_path.size() > room ? size : static_cast<DWORD>(cut.size());
        });
    result = library.Start(place.Settings(), place.Folder());
  }

  const auto records = ReadRecords(place.CurrentFile());
  EXPECT_EQ(result, 0);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_THAT(records[0].text,
              HasSubstr("executable C:\\" + std::string(700, 'p') + "\\long.exe,"));
}

TEST(LogHeaderTest, AcceptsAnyVersionText) {
  const LogPlace place;
  LoadedLogLibrary library;

  EXPECT_EQ(library.StartWithVersion(nullptr, place.Folder()), 0);
  EXPECT_EQ(library.StartWithVersion("", place.Folder()), 0);
  EXPECT_EQ(library.StartWithVersion("1\n\xFF%s", place.Folder()), 0);

  const auto records = ReadRecords(place.CurrentFile());
  ASSERT_EQ(records.size(), 3u);
  EXPECT_THAT(records[0].text, HasSubstr(", program version , executable "));
  EXPECT_THAT(records[1].text, HasSubstr(", program version , executable "));
  EXPECT_THAT(records[2].text, HasSubstr(", program version 1\n\xC3\xBF%s, executable "));
}

}  // namespace
}  // namespace nhupdate_test
