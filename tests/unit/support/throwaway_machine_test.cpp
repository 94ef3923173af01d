// Which machines tests may change, and that they leave all others alone.

#include "tests/support/throwaway_machine.h"

#include <iterator>

#include "tests/support/child_process.h"
#include "tests/support/other_than_wine.h"
#include "tests/support/run_tests.h"
#include "tests/support/windows_basics.h"
#include "tests/support/wine.h"

namespace nhupdate_test {
namespace {

bool IsThrowawayIfItSays(const wchar_t* value) {
  ::SetEnvironmentVariableW(kThrowawayVariable, value);
  return IsThrowawayMachine();
}

TEST(ThrowawayMachineTest, IsOneThatIsSaidToBe) {
  const OtherThanWine not_wine;

  EXPECT_TRUE(IsThrowawayIfItSays(L"1"));
  for (const wchar_t* value : {L"", L"0", L"11", L"1 ", L"yes", L"1 and a long text"}) {
    EXPECT_FALSE(IsThrowawayIfItSays(value)) << PrintToString(value);
  }
  EXPECT_FALSE(IsThrowawayIfItSays(nullptr));
}

TEST(ThrowawayMachineTest, IsAnyPrefixOfWine) {
  if (!IsWine()) {
    GTEST_SKIP() << "That is told to those that are Wine's.";
  }
  ::SetEnvironmentVariableW(kThrowawayVariable, nullptr);

  EXPECT_TRUE(IsThrowawayMachine());
}

// Runs an executable whose tests may change the whole machine; its only test prints "I run".
class WholeMachineTest : public testing::Test {
 protected:
  [[nodiscard]] ChildEnd Run(const std::wstring& arguments) const {
    ChildEnd end =
        RunChild(L"\"" + TestProgramFolder() + L"\\whole_machine_probe.exe\" " + arguments,
                 scratch_.Path() + L"\\output.txt");
    // A failed test that prints this mark would count as skipped for ctest.
    constexpr char kMark[] = "[  SKIPPED ]";
    if (const std::size_t mark = end.output.find(kMark); mark != std::string::npos) {
      end.output.replace(mark, std::size(kMark) - 1, "(skipped)");
    }
    return end;
  }

  ScratchFolder scratch_;
};

TEST_F(WholeMachineTest, RunsNothingOnAMachineThatIsKept) {
  const ChildEnd end = Run(L"kept");

  EXPECT_EQ(end.exit_code, static_cast<DWORD>(kNotForThisMachine));
  EXPECT_THAT(end.output, HasSubstr("(skipped) Changes what"));
  EXPECT_THAT(end.output, HasSubstr("NHUPDATE_THROWAWAY_MACHINE=1"));
  EXPECT_THAT(end.output, Not(HasSubstr("I run")));
}

TEST_F(WholeMachineTest, RunsOnAMachineThatMayBeThrownAway) {
  const ChildEnd end = Run(L"thrown_away");

  EXPECT_EQ(end.exit_code, 0U) << end.output;
  EXPECT_THAT(end.output, HasSubstr("I run"));
}

TEST_F(WholeMachineTest, TellsItsNamesAnywhere) {
  const ChildEnd end = Run(L"kept --gtest_list_tests");

  EXPECT_EQ(end.exit_code, 0U);
  EXPECT_THAT(end.output, HasSubstr("WholeMachineProbe.\n  Runs\n"));
}

}  // namespace
}  // namespace nhupdate_test
