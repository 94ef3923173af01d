#include "log_library/rotated_files.h"

#include <gtest/gtest.h>

#include "log_library/file_names.h"

namespace nhupdate_test {
namespace {

using nhupdate::NextRotatedNumbers;
using nhupdate::RotatedFile;
using nhupdate::RotatedNumber;

TEST(RotatedFilesTest, KnowsItsOwnNamesAndNoOthers) {
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
      {L"", 0},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(RotatedNumber(test.name), test.number) << testing::PrintToString(test.name);
  }
}

TEST(RotatedFilesTest, NextNumberFollowsTheYoungestAndIsFree) {
  const auto file = [](std::uint32_t number, bool is_folder = false) {
    return RotatedFile{L"", number, 0, is_folder};
  };
  const struct {
    const char* name;
    std::vector<RotatedFile> files;  // the youngest first
    std::uint32_t next;
  } cases[] = {
      {"none yet", {}, 1},
      {"some", {file(3), file(2), file(1)}, 4},
      {"a gap", {file(9), file(4)}, 10},
      {"a planted file ahead", {file(3), file(4), file(5)}, 6},
      {"a planted folder ahead", {file(4, true), file(3)}, 5},
      {"nothing but a planted folder", {file(1, true)}, 2},
      {"a planted highest number", {file(999'999'999), file(2), file(1)}, 3},
      {"all around the end", {file(999'999'998), file(999'999'999), file(1)}, 2},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(NextRotatedNumbers(test.files).front(), test.next) << test.name;
  }
}

TEST(RotatedFilesTest, NumbersAfterTheNextOneCantBeForeseen) {
  const std::vector<std::uint32_t> once = NextRotatedNumbers({});
  const std::vector<std::uint32_t> again = NextRotatedNumbers({});

  ASSERT_EQ(once.size(), 4u);
  ASSERT_EQ(again.size(), 4u);
  EXPECT_EQ(once[0], again[0]);
  for (std::size_t index = 1; index < once.size(); ++index) {
    EXPECT_NE(once[index], again[index]);
    EXPECT_GE(once[index], 1u);
    EXPECT_LE(once[index], nhupdate::kHighestRotatedNumber);
  }
}

TEST(RotatedFilesTest, NumberAndNameGoTogether) {
  for (const std::uint32_t number : {1u, 42u, nhupdate::kHighestRotatedNumber}) {
    EXPECT_EQ(RotatedNumber(nhupdate::RotatedName(number)), number);
  }
  EXPECT_EQ(nhupdate::RotatedName(7), L"NHUpdateManager.7.log");
}

}  // namespace
}  // namespace nhupdate_test
