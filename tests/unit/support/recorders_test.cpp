#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/recorded_tools.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

TEST(RecordedBoxesTest, WriteDownEveryBox) {
  const RecordedBoxes boxes;

  ::MessageBoxW(::GetDesktopWindow(), L"text", L"caption", MB_ICONERROR);
  ::MessageBoxW(nullptr, L"", L"", MB_OK);

  const ShownBox first = {
      .text = L"text", .caption = L"caption", .style = 0x10, .is_owned_by_desktop = true};
  EXPECT_THAT(boxes.Shown(), ElementsAre(first, ShownBox()));
}

TEST(RecordedBoxesTest, KnowTheProgramsErrorBoxes) {
  const RecordedBoxes boxes;

  ::MessageBoxW(::GetDesktopWindow(), L"text", L"caption", MB_ICONERROR | MB_TOPMOST);

  EXPECT_THAT(boxes.Shown(), ElementsAre(ErrorBoxOf(L"text", L"caption")));
}

TEST(RecordedSleepsTest, DoNotSleep) {
  const RecordedSleeps sleeps;
  const ULONGLONG start = ::GetTickCount64();

  ::Sleep(3'600'000);

  EXPECT_LT(::GetTickCount64() - start, 60'000u);
  EXPECT_THAT(sleeps.Milliseconds(), ElementsAre(3'600'000u));
}

TEST(RecordedSleepsTest, LetSomethingHappenMeanwhile) {
  std::vector<int> numbers;
  const RecordedSleeps sleeps([&](int number) { numbers.push_back(number); });

  ::Sleep(1);
  ::Sleep(2);

  EXPECT_THAT(numbers, ElementsAre(1, 2));
  EXPECT_THAT(sleeps.Milliseconds(), ElementsAre(1u, 2u));
}

TEST(RecordedToolsTest, WriteDownWhatIsStartedAndCallItASuccess) {
  const RecordedTools tools;

  const HINSTANCE result =
      ::ShellExecuteW(nullptr, nullptr, L"tool.exe", L"\"a b\" /c", nullptr, SW_HIDE);

  EXPECT_GT(reinterpret_cast<INT_PTR>(result), 32);
  EXPECT_THAT(tools.Started(), ElementsAre(L"tool.exe \"a b\" /c"));
}

}  // namespace
}  // namespace nhupdate_test
