// Which machines are changed by tests, and that no other is.

#include "tests/support/throwaway_machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/files.h"
#include "tests/support/other_than_wine.h"
#include "tests/support/run_tests.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/wine.h"

namespace nhupdate_test {
namespace {

using testing::HasSubstr;
using testing::Not;

bool IsThrowawayIfItSays(const wchar_t* value) {
  ::SetEnvironmentVariableW(kThrowawayVariable, value);
  return IsThrowawayMachine();
}

TEST(ThrowawayMachineTest, IsOneThatIsSaidToBe) {
  const OtherThanWine not_wine;

  EXPECT_TRUE(IsThrowawayIfItSays(L"1"));
  for (const wchar_t* value : {L"", L"0", L"11", L"1 ", L"yes", L"1 and a long text"}) {
    EXPECT_FALSE(IsThrowawayIfItSays(value)) << testing::PrintToString(value);
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

// An executable whose tests have the whole machine for themselves; its one test says "I run".
class WholeMachineTest : public testing::Test {
 protected:
  struct End {
    DWORD exit_code = 0;
    std::string output;
  };

  [[nodiscard]] End Run(const std::wstring& arguments) const {
    const std::wstring path = scratch_.Path() + L"\\output.txt";
    SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
    nhupdate::UniqueFile file(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                            &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                            nullptr));
    std::wstring command_line =
        L"\"" + TestProgramFolder() + L"\\whole_machine_probe.exe\" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = file.Get();
    PROCESS_INFORMATION information = {};
    EXPECT_TRUE(::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                 nullptr, &startup, &information));
    ::CloseHandle(information.hThread);
    const nhupdate::UniqueKernelHandle process(information.hProcess);
    constexpr DWORD kLimitMs = 30'000;
    EXPECT_EQ(::WaitForSingleObject(process.Get(), kLimitMs), static_cast<DWORD>(WAIT_OBJECT_0));
    End end;
    ::GetExitCodeProcess(process.Get(), &end.exit_code);
    file.Reset();
    end.output = ReadFileBytes(path);
    // ctest would take a failure that shows this for a test that was skipped.
    constexpr char kMark[] = "[  SKIPPED ]";
    if (const std::size_t mark = end.output.find(kMark); mark != std::string::npos) {
      end.output.replace(mark, std::size(kMark) - 1, "(skipped)");
    }
    return end;
  }

  ScratchFolder scratch_;
};

TEST_F(WholeMachineTest, RunsNothingOnAMachineThatIsKept) {
  const End end = Run(L"kept");

  EXPECT_EQ(end.exit_code, static_cast<DWORD>(kNotForThisMachine));
  EXPECT_THAT(end.output, HasSubstr("(skipped) Changes what"));
  EXPECT_THAT(end.output, HasSubstr("NHUPDATE_THROWAWAY_MACHINE=1"));
  EXPECT_THAT(end.output, Not(HasSubstr("I run")));
}

TEST_F(WholeMachineTest, RunsOnAMachineThatMayBeThrownAway) {
  const End end = Run(L"thrown_away");

  EXPECT_EQ(end.exit_code, 0U) << end.output;
  EXPECT_THAT(end.output, HasSubstr("I run"));
}

TEST_F(WholeMachineTest, TellsItsNamesAnywhere) {
  const End end = Run(L"kept --gtest_list_tests");

  EXPECT_EQ(end.exit_code, 0U);
  EXPECT_THAT(end.output, HasSubstr("WholeMachineProbe.\n  Runs\n"));
}

}  // namespace
}  // namespace nhupdate_test
