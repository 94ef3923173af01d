#include "log_library/settings.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

LogSettings Read(const std::string& content) {
  const ScratchFolder scratch;
  const std::wstring path = scratch.Path() + L"\\LogConfig.ini";
  WriteFileBytes(path, content);
  return ReadLogSettings(path.c_str());
}

// All four values: level, size, count, age.
std::vector<unsigned> Values(const LogSettings& settings) {
  return {static_cast<unsigned>(settings.level), settings.max_file_kb, settings.max_files,
          settings.max_age_days};
}

const std::vector<unsigned> kDefaults = {2, 5120, 5, 30};

TEST(LogSettingsTest, ReadsAllFourValues) {
  const LogSettings settings =
      Read("[Log]\r\nLevel=4\r\nMaxFileSizeKB=64\r\nMaxFiles=12\r\nMaxAgeDays=7\r\n");

  EXPECT_EQ(Values(settings), (std::vector<unsigned>{4, 64, 12, 7}));
}

TEST(LogSettingsTest, TakesTheDefaultsWithoutAUsableFile) {
  const ScratchFolder scratch;

  EXPECT_EQ(Values(ReadLogSettings(nullptr)), kDefaults);
  EXPECT_EQ(Values(ReadLogSettings(L"")), kDefaults);
  EXPECT_EQ(Values(ReadLogSettings((scratch.Path() + L"\\missing.ini").c_str())), kDefaults);
  EXPECT_EQ(Values(ReadLogSettings(scratch.Path().c_str())), kDefaults);
  for (const std::string& content :
       {std::string(), std::string("Level=4\r\n"),
        std::string("[Other]\r\nLevel=4\r\nMaxFiles=9\r\n"), std::string(100'000, '\xFF')}) {
    EXPECT_EQ(Values(Read(content)), kDefaults) << content.substr(0, 20);
  }
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
      {"/=", 2},                    // 3, were what lies on either side of the digits counted on
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
    const LogSettings settings =
        Read(std::string("[Log]\r\nLevel=") + test.value + "\r\nMaxFiles=9\r\n");

    EXPECT_EQ(settings.level, test.level) << test.value;
    EXPECT_EQ(settings.max_files, 9u) << test.value;
  }
}

TEST(LogSettingsTest, TakesTheDefaultOutsideTheRangeOfEachKey) {
  const struct {
    const char* lines;
    std::vector<unsigned> values;
  } cases[] = {
      {"MaxFileSizeKB=16", {2, 16, 5, 30}},
      {"MaxFileSizeKB=15", kDefaults},
      {"MaxFileSizeKB=1048576", {2, 1048576, 5, 30}},
      {"MaxFileSizeKB=1048577", kDefaults},
      {"MaxFiles=1", {2, 5120, 1, 30}},
      {"MaxFiles=0", kDefaults},
      {"MaxFiles=1000", {2, 5120, 1000, 30}},
      {"MaxFiles=1001", kDefaults},
      {"MaxAgeDays=1", {2, 5120, 5, 1}},
      {"MaxAgeDays=0", kDefaults},
      {"MaxAgeDays=3650", {2, 5120, 5, 3650}},
      {"MaxAgeDays=3651", kDefaults},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(Values(Read(std::string("[Log]\r\n") + test.lines + "\r\n")), test.values)
        << test.lines;
  }
}

TEST(LogSettingsTest, ShippedFileHoldsTheDefaults) {
  const std::string shipped = ReadFileBytes(TestProgramFolder() + L"\\log_config_as_shipped.ini");

  for (const char* line : {"Level=2", "MaxFileSizeKB=5120", "MaxFiles=5", "MaxAgeDays=30"}) {
    EXPECT_NE(shipped.find(std::string("\n") + line + "\n"), std::string::npos)
        << "There is no line " << line << " in data/LogConfig.ini. A default stands there, in "
        << "log_library/settings.h and settings.cpp, and in this file: change all of them.";
  }
  EXPECT_EQ(Values(Read(shipped)), kDefaults)
      << "data/LogConfig.ini and the defaults of log_library/settings.h are different.";
}

}  // namespace
}  // namespace nhupdate_test
