// The small doubles that write down what is called, count it or let it fail.

#include "tests/support/captured_console.h"
#include "tests/support/failing_copy.h"
#include "tests/support/open_handles.h"
#include "tests/support/recorded_boxes.h"
#include "tests/support/recorded_sleeps.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(RecordedBoxesTest, WriteDownEveryBoxAndKnowTheProgramsErrorBoxes) {
  const RecordedBoxes boxes;

  ::MessageBoxW(::GetDesktopWindow(), L"text", L"caption", MB_ICONERROR | MB_TOPMOST);
  ::MessageBoxW(nullptr, L"", L"", MB_OK);

  EXPECT_THAT(boxes.Shown(), ElementsAre(ErrorBoxOf(L"text", L"caption"), ShownBox()));
}

TEST(RecordedSleepsTest, DoNotSleepAndLetSomethingHappenMeanwhile) {
  std::vector<int> numbers;
  const RecordedSleeps sleeps([&](int number) { numbers.push_back(number); });
  const ULONGLONG start = ::GetTickCount64();

  ::Sleep(3'600'000);
  ::Sleep(2);

  EXPECT_LT(::GetTickCount64() - start, 60'000u);
  EXPECT_THAT(numbers, ElementsAre(1, 2));
  EXPECT_THAT(sleeps.Milliseconds(), ElementsAre(3'600'000u, 2u));
}

TEST(RecordedToolsTest, WriteDownWhatIsStartedAndCallItASuccess) {
  const RecordedTools tools;

  const HINSTANCE result =
      ::ShellExecuteW(nullptr, nullptr, L"tool.exe", L"\"a b\" /c", nullptr, SW_HIDE);

  EXPECT_GT(reinterpret_cast<INT_PTR>(result), 32);
  EXPECT_THAT(tools.Started(), ElementsAre(L"tool.exe \"a b\" /c"));
}

TEST(CapturedConsoleTest, TakesWhatIsWrittenAndGivesTheStandardOutputBack) {
  const HANDLE before = ::GetStdHandle(STD_OUTPUT_HANDLE);
  {
    const CapturedConsole console;
    DWORD written = 0;
    EXPECT_EQ(console.Bytes(), "");

    for (const std::string bytes : {"Pr\xC3\xBC", "fung\r\n"}) {
      EXPECT_TRUE(::WriteFile(::GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(),
                              static_cast<DWORD>(bytes.size()), &written, nullptr));
    }

    EXPECT_EQ(console.Bytes(), std::string("Pr\xC3\xBC") + "fung\r\n");
    EXPECT_EQ(console.Text(), L"Pr\u00FCfung\r\n");
    EXPECT_NE(::GetStdHandle(STD_OUTPUT_HANDLE), before);
  }

  EXPECT_EQ(::GetStdHandle(STD_OUTPUT_HANDLE), before);
}

TEST(OpenHandlesTest, AreCountedOneByOneWhileTheyAreOpen) {
  const int before = CountOpenHandles();
  UniqueKernelHandle first(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
  UniqueKernelHandle second(::CreateEventW(nullptr, TRUE, FALSE, nullptr));

  const int with_both = CountOpenHandles();
  first.Reset();
  const int with_one = CountOpenHandles();

  EXPECT_EQ(with_both, before + 2);
  EXPECT_EQ(with_one, before + 1);
}

TEST(FailingCopyTest, FailsThoseThatAreChosenWithTheError) {
  const ScratchFolder scratch;
  const auto copy_to = [&](const std::wstring& name) {
    return ::CopyFileW((scratch.Path() + L"\\source").c_str(),
                       (scratch.Path() + L"\\" + name).c_str(), FALSE);
  };
  WriteFileBytes(scratch.Path() + L"\\source", "x");
  {
    const FailingCopy copy(ERROR_DISK_FULL,
                           [](const std::wstring& target) { return target.ends_with(L"bad"); });
    EXPECT_FALSE(copy_to(L"bad"));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_DISK_FULL});
    EXPECT_TRUE(copy_to(L"good"));
    EXPECT_EQ(copy.Calls(), 2);
  }
  {
    const FailingCopy copy(ERROR_DISK_FULL, [&](auto&) { return copy.Calls() <= 2; });
    EXPECT_FALSE(copy_to(L"third"));
    EXPECT_FALSE(copy_to(L"third"));
    EXPECT_TRUE(copy_to(L"third"));
  }
  const FailingCopy all(ERROR_DISK_FULL);
  EXPECT_FALSE(copy_to(L"last"));

  EXPECT_THAT(ListTree(scratch.Path()), ElementsAre(L"good", L"source", L"third"));
}

}  // namespace
}  // namespace nhupdate_test
