#include "log_library/file_names.h"

#include "tests/support/basics.h"

namespace nhupdate_test {
namespace {

TEST(FileNamesTest, OfRotatedFilesHaveANumberAndNoOthersDo) {
  const struct {
    const wchar_t* name;
    std::uint32_t number;
  } cases[] = {
      {L"NHUpdateManager.1.log", 1},
      {L"NHUpdateManager.42.log", 42},
      {L"NHUpdateManager.007.log", 7},
      {L"nhupdatemanager.3.LOG", 3},
      {L"NHUpdateManager.999999999.log", 999'999'999},
      {L"NHUpdateManager.1000000000.log", 0},
      {L"NHUpdateManager.0.log", 0},
      {L"NHUpdateManager.log", 0},
      {L"NHUpdateManager..log", 0},
      {L"NHUpdateManager.-1.log", 0},
      {L"NHUpdateManager.1x.log", 0},
      {L"NHUpdateManager.1.log.bak", 0},
      {L"Other.1.log", 0},
      {L"MyUpdateManager.1.log", 0},
      {L"", 0},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(RotatedNumber(test.name), test.number) << PrintToString(test.name);
  }
}

TEST(FileNamesTest, AreMadeFromNumbers) {
  EXPECT_EQ(RotatedName(7), L"NHUpdateManager.7.log");
  for (const std::uint32_t number : {1u, 42u, kHighestRotatedNumber}) {
    EXPECT_EQ(RotatedNumber(RotatedName(number)), number);
  }
}

}  // namespace
}  // namespace nhupdate_test
