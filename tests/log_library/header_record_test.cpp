#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "log_library/record_time.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/interposer.h"

// This needs <windows.h> first.
#include <winver.h>

namespace nhupdate_test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

// The text of the only record.
std::string HeaderOf(const LogPlace& place) {
  const auto records = ReadRecords(place.CurrentFile());
  EXPECT_EQ(records.size(), 1u);
  return records.empty() ? std::string() : records[0].text;
}

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
                                            "program version 4.5.6, interface version 7.8.9, "
                                            "executable \\w:\\\\.*\\\\log_library_tests.exe, "
                                            "Windows \\d+\\.\\d+\\.\\d+, "
                                            "time zone \\w.* \\(UTC.\\d\\d:\\d\\d\\)"));
  EXPECT_THAT(records[0].text, EndsWith("(UTC" + offset + ")"));
}

// This executable's version resource is what the test makes of it.
TEST(LogHeaderTest, NamesTheVersionOfTheRunningExecutable) {
  std::vector<char> resource(40 + sizeof(VS_FIXEDFILEINFO));
  VS_FIXEDFILEINFO information = {};
  information.dwSignature = VS_FFI_SIGNATURE;
  const struct {
    const char* name;
    DWORD signature;
    DWORD upper;
    DWORD lower;
    DWORD size;
    const char* version;
  } cases[] = {
      {"three parts", VS_FFI_SIGNATURE, 0x0001'0003, 0x0000'0000, 92, "1.3.0"},
      {"four parts", VS_FFI_SIGNATURE, 0xFFFF'0000, 0x0002'000A, 92, "65535.0.2.10"},
      {"another kind of resource", 0x1234'5678, 0x0001'0003, 0x0000'0000, 92, "unknown"},
      {"cut off", VS_FFI_SIGNATURE, 0x0001'0003, 0x0000'0000, 91, "unknown"},
  };
  for (const auto& test : cases) {
    information.dwSignature = test.signature;
    information.dwFileVersionMS = test.upper;
    information.dwFileVersionLS = test.lower;
    std::memcpy(resource.data() + 40, &information, sizeof(information));
    const LogPlace place;
    LoadedLogLibrary library;
    {
      Interposer<decltype(::SizeofResource)> size(library.Module(), "SizeofResource",
                                                  [&](HMODULE, HRSRC) { return test.size; });
      Interposer<decltype(::LockResource)> lock(library.Module(), "LockResource",
                                                [&](HGLOBAL) -> void* { return resource.data(); });
      EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 0);
    }

    EXPECT_THAT(HeaderOf(place), HasSubstr(std::string(", program version ") + test.version + ","))
        << test.name;
  }
}

TEST(LogHeaderTest, SaysThatTheVersionOfAnExecutableWithoutAResourceIsUnknown) {
  const LogPlace place;
  LoadedLogLibrary library;
  int result = 1;
  {
    Interposer<decltype(::FindResourceW)> find(
        library.Module(), "FindResourceW", [](HMODULE, const wchar_t*, const wchar_t*) -> HRSRC {
          ::SetLastError(ERROR_RESOURCE_TYPE_NOT_FOUND);
          return nullptr;
        });
    result = library.Start(place.Settings(), place.Folder());
  }

  EXPECT_EQ(result, 0);
  EXPECT_THAT(HeaderOf(place), HasSubstr(", program version unknown, interface version 1.0.0,"));
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
  EXPECT_THAT(HeaderOf(place), HasSubstr(", Windows of unknown version, time zone "));
}

TEST(LogHeaderTest, IsWrittenWhateverTheLevel) {
  const LogPlace place("Level=4\n");
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 0);
  EXPECT_THAT(HeaderOf(place), StartsWith("Log library "));
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

  EXPECT_EQ(result, 0);
  EXPECT_THAT(HeaderOf(place),
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
  EXPECT_THAT(records[0].text, HasSubstr(", interface version , executable "));
  EXPECT_THAT(records[1].text, HasSubstr(", interface version , executable "));
  EXPECT_THAT(records[2].text, HasSubstr(", interface version 1\n\xC3\xBF%s, executable "));
}

}  // namespace
}  // namespace nhupdate_test
