#include "log_library/file_time.h"
#include "tests/log_library/test_log.h"

namespace nhupdate_test {
namespace {

using testing::EndsWith;
using testing::MatchesRegex;
using testing::StartsWith;

// Starts the log, and gives the text of its only record.
std::string HeaderOf(TestLog& log, const char* version = "1.0.0") {
  EXPECT_EQ(log.Start(log.Settings().c_str(), log.Folder().c_str(), version), 0);
  const auto records = ReadRecords(log.CurrentFile());
  EXPECT_EQ(records.size(), 1u);
  return records.empty() ? std::string() : records[0].text;
}

TEST(LogHeaderTest, TellsWhoWritesOnWhatSystem) {
  TestLog log;

  const std::string header = HeaderOf(log, "7.8.9");

  // GoogleTest's small regular expressions know digits as \d and no groups or sets. Version 4.5.6
  // is that of this executable (version.rc).
  EXPECT_THAT(header, MatchesRegex("Log library \\d+\\.\\d+\\.\\d+, "
                                   "program version 4.5.6, interface version 7.8.9, "
                                   "executable \\w:\\\\.*\\\\log_library_tests.exe, "
                                   "Windows \\d+\\.\\d+\\.\\d+, "
                                   "time zone \\w.* \\(UTC.\\d\\d:\\d\\d\\)"));
  const auto records = ReadRecords(log.CurrentFile());
  EXPECT_EQ(records.at(0).tag, "NSWLogDynamic64U");
  EXPECT_EQ(records.at(0).level, "INFO");
}

LONG WINAPI TellWindowsVersion(OSVERSIONINFOW* version) {
  version->dwMajorVersion = 10;
  version->dwMinorVersion = 2;
  version->dwBuildNumber = 19045;
  return 0;
}

LONG WINAPI TellNothing(OSVERSIONINFOW* /*version*/) {
  return -1;
}

FARPROC EntryOf(LONG(WINAPI* function)(OSVERSIONINFOW*)) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}

TEST(LogHeaderTest, NamesTheVersionOfWindowsWhereThereIsAWayToKnowIt) {
  const struct {
    FARPROC entry;
    const char* shown;
  } cases[] = {
      {EntryOf(&TellWindowsVersion), "10.2.19045"},
      {EntryOf(&TellNothing), "of unknown version"},
      {nullptr, "of unknown version"},
  };
  for (const auto& test : cases) {
    TestLog log;
    INTERPOSER(GetProcAddress) entry(log.Module(), [&](HMODULE module, const char* name) {
      return name == std::string_view("RtlGetVersion") ? test.entry
                                                       : entry.Original()(module, name);
    });

    EXPECT_THAT(HeaderOf(log), HasSubstr(std::string(", Windows ") + test.shown + ", time zone "));
  }
}

TEST(LogHeaderTest, NamesTheTimeZoneByItsKeyAndTheOffsetOfNow) {
  TestLog log;
  INTERPOSER(GetDynamicTimeZoneInformation) zone(
      log.Module(), [](DYNAMIC_TIME_ZONE_INFORMATION* information) -> DWORD {
        *information = {{}, L"Neufundland", {}, {}, {}, {}, {}, L"Newfoundland Standard Time", {}};
        return TIME_ZONE_ID_STANDARD;
      });
  INTERPOSER(FileTimeToLocalFileTime) local(
      log.Module(), [](const FILETIME* utc, FILETIME* local_time) -> BOOL {
        constexpr ULONGLONG kUnitsOf210Minutes = 210ULL * 60 * 10'000'000;
        const ULARGE_INTEGER units = {.QuadPart = FileTimeUnits(*utc) - kUnitsOf210Minutes};
        *local_time = {units.LowPart, units.HighPart};
        return TRUE;
      });

  EXPECT_THAT(HeaderOf(log), EndsWith(", time zone Newfoundland Standard Time (UTC-03:30)"));
}

TEST(LogHeaderTest, IsWrittenWhateverTheLevel) {
  TestLog log("Level=4\n");

  EXPECT_THAT(HeaderOf(log), StartsWith("Log library "));
}

// Where there isn't room enough, Windows cuts the path and returns the size that it was given.
TEST(LogHeaderTest, HoldsTheWholeOfALongExecutablePath) {
  for (const std::size_t length : {259u, 260u, 700u}) {
    const std::wstring long_path = L"C:\\" + std::wstring(length - 3, L'p');
    TestLog log;
    INTERPOSER(GetModuleFileNameW) name(
        log.Module(), [&](HMODULE, wchar_t* path, DWORD size) -> DWORD {
          const std::wstring cut = long_path.substr(0, size - 1);
          std::copy_n(cut.c_str(), cut.size() + 1, path);
          return cut == long_path ? static_cast<DWORD>(cut.size()) : size;
        });

    EXPECT_THAT(HeaderOf(log),
                HasSubstr("executable C:\\" + std::string(length - 3, 'p') + ", Windows"));
  }
}

TEST(LogHeaderTest, AcceptsAnyVersionText) {
  const struct {
    const char* version;
    const char* shown;
  } cases[] = {
      {nullptr, ""},
      {"", ""},
      {"1\n\xFF%s", "1\n\xC3\xBF%s"},
  };
  for (const auto& [version, shown] : cases) {
    TestLog log;

    EXPECT_THAT(HeaderOf(log, version),
                HasSubstr(std::string(", interface version ") + shown + ", executable "));
  }
}

}  // namespace
}  // namespace nhupdate_test
