#include "log_library/rotated_files.h"

#include "log_library/file_names.h"
#include "log_library/file_time.h"
#include "tests/log_library/aged_file.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(RotatedFilesTest, AreListedFromTheYoungestOnAndByNumberWhenOfOneTime) {
  const ScratchFolder scratch;
  const auto path = [&](int number) {
    return scratch.Path() + L"\\NHUpdateManager." + std::to_wstring(number) + L".log";
  };
  const FILETIME new_time = HoursAgo(1);
  const FILETIME old_time = HoursAgo(2);
  for (const int number : {2, 7, 10}) {
    WriteFileBytes(path(number), "x");
    SetLastWritten(path(number), old_time);
  }
  WriteFileBytes(path(1), "x");
  SetLastWritten(path(1), new_time);
  CreateFolders(path(5));
  WriteFileBytes(scratch.Path() + L"\\NHUpdateManager.log", "x");
  WriteFileBytes(scratch.Path() + L"\\NHUpdateManager.x.log", "x");

  const std::vector<RotatedFile> files = ListRotatedFiles(scratch.Path());

  std::vector<std::uint32_t> numbers;
  for (const RotatedFile& file : files) {
    numbers.push_back(file.number);
    EXPECT_EQ(file.name, RotatedName(file.number));
    EXPECT_EQ(file.is_folder, file.number == 5);
  }
  ASSERT_THAT(numbers, ElementsAre(5, 1, 10, 7, 2));
  EXPECT_EQ(files[1].last_written, FileTimeUnits(new_time));
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
      {"the highest number but one", {file(999'999'998)}, 999'999'999},
      {"a gap", {file(9), file(4)}, 10},
      {"a planted file ahead", {file(3), file(4), file(5)}, 6},
      {"a planted folder ahead", {file(3), file(4, true)}, 5},
      {"a planted folder that is the youngest", {file(7, true), file(3)}, 4},
      {"nothing but a planted folder", {file(7, true)}, 1},
      {"nothing but a planted folder in the way", {file(1, true)}, 2},
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
  }
}

// They come from the system's counter, of which the product by an odd factor, cut to 64 bits, has
// every value: also those at either end of the range, and the highest of all.
TEST(RotatedFilesTest, NumbersAfterTheNextOneGoFrom1ToTheHighest) {
  const struct {
    std::uint64_t scattered;
    std::uint32_t number;
  } cases[] = {
      {0, 1},
      {std::uint64_t{999'999'998} << 32, 999'999'999},
      {std::uint64_t{999'999'999} << 32, 1},
      {std::uint64_t{0xFFFF'FFFF} << 32, 294'967'300},
  };
  constexpr std::uint64_t kInverseOfTheFactor = 0xF1DE'83E1'9937'733D;
  for (const auto& test : cases) {
    const INTERPOSER(QueryPerformanceCounter) counter([&](LARGE_INTEGER* count) -> BOOL {
      count->QuadPart = static_cast<LONGLONG>(test.scattered * kInverseOfTheFactor);
      return TRUE;
    });

    EXPECT_THAT(NextRotatedNumbers({}), ElementsAre(1, test.number, test.number, test.number));
  }
}

}  // namespace
}  // namespace nhupdate_test
