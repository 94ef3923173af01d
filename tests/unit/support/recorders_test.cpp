#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/registry.h"
#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/scratch_local_machine.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

TEST(RecordedBoxesTest, WritesDownEveryBox) {
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

TEST(RecordedSleepsTest, DoesNotSleep) {
  const RecordedSleeps sleeps;
  const ULONGLONG start = ::GetTickCount64();

  ::Sleep(3'600'000);

  EXPECT_LT(::GetTickCount64() - start, 60'000u);
  EXPECT_THAT(sleeps.Milliseconds(), ElementsAre(3'600'000u));
}

TEST(RecordedSleepsTest, LetsSomethingHappenMeanwhile) {
  int calls = 0;
  const RecordedSleeps sleeps([&] { ++calls; });

  ::Sleep(1);
  ::Sleep(2);

  EXPECT_EQ(calls, 2);
  EXPECT_THAT(sleeps.Milliseconds(), ElementsAre(1u, 2u));
}

TEST(RecordedToolsTest, WritesDownWhatIsStartedAndCallsItASuccess) {
  const RecordedTools tools;

  const HINSTANCE result =
      ::ShellExecuteW(nullptr, nullptr, L"tool.exe", L"\"a b\" /c", nullptr, SW_HIDE);

  EXPECT_GT(reinterpret_cast<INT_PTR>(result), 32);
  EXPECT_THAT(tools.Started(), ElementsAre(L"tool.exe \"a b\" /c"));
}

TEST(ScratchLocalMachineTest, TakesWhatIsWrittenAndForgetsItAfterwards) {
  {
    const ScratchLocalMachine local_machine;
    EXPECT_TRUE(local_machine.IsEmpty());

    EXPECT_EQ(nhupdate::SetRegString(L"SOFTWARE\\nhupdate", L"name", L"text"), 1);

    EXPECT_FALSE(local_machine.IsEmpty());
    EXPECT_EQ(local_machine.Text(L"SOFTWARE\\nhupdate", L"name"), L"text");
    EXPECT_EQ(local_machine.Text(L"SOFTWARE\\nhupdate", L"other"), L"(none)");
  }

  const ScratchLocalMachine next;
  EXPECT_TRUE(next.IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
