#include "log_library/settings.h"

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

using nhupdate::LogSettings;
using nhupdate::ReadLogSettings;

LogSettings Read(const std::string& content) {
  const ScratchFolder scratch;
  const std::wstring path = scratch.Path() + L"\\LogConfig.ini";
  WriteFileBytes(path, content);
  return ReadLogSettings(path.c_str());
}

void ExpectDefaults(const LogSettings& settings) {
  EXPECT_EQ(settings.level, 2);
  EXPECT_EQ(settings.max_file_kb, 5120u);
  EXPECT_EQ(settings.max_files, 5u);
  EXPECT_EQ(settings.max_age_days, 30u);
}

TEST(LogSettingsTest, ReadsAllFourValues) {
  const LogSettings settings =
      Read("[Log]\r\nLevel=4\r\nMaxFileSizeKB=64\r\nMaxFiles=12\r\nMaxAgeDays=7\r\n");

  EXPECT_EQ(settings.level, 4);
  EXPECT_EQ(settings.max_file_kb, 64u);
  EXPECT_EQ(settings.max_files, 12u);
  EXPECT_EQ(settings.max_age_days, 7u);
}

TEST(LogSettingsTest, TakesTheDefaultsWithoutAUsableFile) {
  const ScratchFolder scratch;

  ExpectDefaults(ReadLogSettings(nullptr));
  ExpectDefaults(ReadLogSettings(L""));
  ExpectDefaults(ReadLogSettings((scratch.Path() + L"\\missing.ini").c_str()));
  ExpectDefaults(ReadLogSettings(scratch.Path().c_str()));
  ExpectDefaults(Read(""));
  ExpectDefaults(Read("Level=4\r\n"));
  ExpectDefaults(Read("[Other]\r\nLevel=4\r\nMaxFiles=9\r\n"));
  ExpectDefaults(Read(std::string(100'000, '\xFF')));
}

TEST(LogSettingsTest, TakesTheDefaultForEachValueThatIsBroken) {
  const struct {
    const char* value;
    int level;
  } cases[] = {
      {"1", 1},
      {"3", 3},
      {"4", 4},
      {"03", 3},
      {" 3 ", 3},
      {"\"3\"", 3},
      {"", 2},
      {"   ", 2},
      {"0", 2},
      {"5", 2},
      {"-3", 2},
      {"+3", 2},
      {"3.0", 2},
      {"0x3", 2},
      {"3 ; warnings", 2},
      {"three", 2},
      {"4294967299", 2},            // 3, were it cut to 32 bits
      {"18446744073709551619", 2},  // 3, were it cut to 64 bits
      {"00000000000003", 3},
      {"000000000000003", 2},   // more digits than are read
      {"0000000000000030", 2},  // 3, were it cut to what is read
      {"000000000000000000000003", 2},
      {"\xD9\xA3", 2},
      {"%s%n", 2},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.value);
    const LogSettings settings =
        Read(std::string("[Log]\r\nLevel=") + test.value + "\r\nMaxFiles=9\r\n");

    EXPECT_EQ(settings.level, test.level);
    EXPECT_EQ(settings.max_files, 9u);
  }
}

TEST(LogSettingsTest, TakesTheDefaultOutsideTheRangeOfEachKey) {
  const struct {
    const char* lines;
    unsigned max_file_kb;
    unsigned max_files;
    unsigned max_age_days;
  } cases[] = {
      {"MaxFileSizeKB=16", 16, 5, 30},
      {"MaxFileSizeKB=15", 5120, 5, 30},
      {"MaxFileSizeKB=1048576", 1048576, 5, 30},
      {"MaxFileSizeKB=1048577", 5120, 5, 30},
      {"MaxFiles=1", 5120, 1, 30},
      {"MaxFiles=0", 5120, 5, 30},
      {"MaxFiles=1000", 5120, 1000, 30},
      {"MaxFiles=1001", 5120, 5, 30},
      {"MaxAgeDays=1", 5120, 5, 1},
      {"MaxAgeDays=0", 5120, 5, 30},
      {"MaxAgeDays=3650", 5120, 5, 3650},
      {"MaxAgeDays=3651", 5120, 5, 30},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.lines);
    const LogSettings settings = Read(std::string("[Log]\r\n") + test.lines + "\r\n");

    EXPECT_EQ(settings.max_file_kb, test.max_file_kb);
    EXPECT_EQ(settings.max_files, test.max_files);
    EXPECT_EQ(settings.max_age_days, test.max_age_days);
  }
}

TEST(LogSettingsTest, ShippedFileHoldsTheDefaults) {
  const std::string shipped = ReadFileBytes(TestProgramFolder() + L"\\log_config_as_shipped.ini");

  for (const char* line : {"Level=2", "MaxFileSizeKB=5120", "MaxFiles=5", "MaxAgeDays=30"}) {
    EXPECT_NE(shipped.find(std::string("\n") + line + "\n"), std::string::npos)
        << "There is no line " << line << " in data/LogConfig.ini. A default stands there, in "
        << "log_library/settings.h and settings.cpp, and in this file: change all of them.";
  }
  SCOPED_TRACE("data/LogConfig.ini and the defaults of log_library/settings.h are different.");
  ExpectDefaults(Read(shipped));
}

}  // namespace
}  // namespace nhupdate_test
