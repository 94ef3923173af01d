#include "tests/support/scripted_shell.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

SHELLEXECUTEINFOW Execution() {
  SHELLEXECUTEINFOW execution = {};
  execution.cbSize = sizeof(execution);
  execution.lpFile = L"program.exe";
  execution.lpParameters = L"-x";
  return execution;
}

TEST(ScriptedShellTest, AnswersLaunchesInTurn) {
  ScriptedShell shell({FailsWith(ERROR_CANCELLED), EndsWith(7)});
  SHELLEXECUTEINFOW first = Execution();
  SHELLEXECUTEINFOW second = Execution();

  EXPECT_FALSE(::ShellExecuteExW(&first));
  EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_CANCELLED));
  ASSERT_TRUE(::ShellExecuteExW(&second));
  DWORD exit_code = 0;
  EXPECT_EQ(::WaitForSingleObject(second.hProcess, INFINITE), static_cast<DWORD>(WAIT_OBJECT_0));
  EXPECT_TRUE(::GetExitCodeProcess(second.hProcess, &exit_code));
  EXPECT_TRUE(::CloseHandle(second.hProcess));

  EXPECT_EQ(exit_code, 7u);
  EXPECT_THAT(shell.Events(),
              ElementsAre("launch 1", "launch 2", "wait 2 for ever", "exit code 2", "close 2"));
  EXPECT_EQ(shell.Launches()[1].file, L"program.exe");
  EXPECT_EQ(shell.Launches()[1].parameters, L"-x");
  EXPECT_EQ(shell.Launches()[1].verb, L"(null)");
}

TEST(ScriptedShellTest, CountsWhatIsLeftOpen) {
  ScriptedShell shell({EndsWith(0)});
  SHELLEXECUTEINFOW execution = Execution();

  ::ShellExecuteExW(&execution);

  EXPECT_EQ(shell.OpenProcesses(), 1u);
}

TEST(ScriptedShellTest, GivesNoProcessForWorkThatIsHandedOver) {
  ScriptedShell shell({HandedOver()});
  SHELLEXECUTEINFOW execution = Execution();

  EXPECT_TRUE(::ShellExecuteExW(&execution));

  EXPECT_EQ(execution.hProcess, nullptr);
}

TEST(ScriptedShellTest, LetsAProcessDoSomethingWhileItIsWaitedFor) {
  int deeds = 0;
  ScriptedShell shell({EndsWith(0, [&] { ++deeds; })});
  SHELLEXECUTEINFOW execution = Execution();
  ASSERT_TRUE(::ShellExecuteExW(&execution));
  EXPECT_EQ(deeds, 0);

  ::WaitForSingleObject(execution.hProcess, INFINITE);

  EXPECT_EQ(deeds, 1);
}

void LaunchTooOften() {
  ScriptedShell shell({});
  SHELLEXECUTEINFOW execution = Execution();
  ::ShellExecuteExW(&execution);
}

TEST(ScriptedShellTest, FailsTheTestAtALaunchTooMany) {
  testing::TestPartResultArray failures;
  {
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
    LaunchTooOften();
  }

  // The second is of the script's end.
  ASSERT_EQ(failures.size(), 2);
  EXPECT_THAT(failures.GetTestPartResult(0).message(), HasSubstr("Nobody expects a launch of"));
  EXPECT_THAT(failures.GetTestPartResult(0).message(), HasSubstr("program.exe"));
}

TEST(ScriptedShellTest, FailsTheTestWhenALaunchIsMissing) {
  testing::TestPartResultArray failures;
  {
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
    const ScriptedShell shell({EndsWith(0)});
  }

  ASSERT_EQ(failures.size(), 1);
  EXPECT_THAT(failures.GetTestPartResult(0).message(), HasSubstr("launches in the script"));
}

TEST(ScriptedShellTest, AnswersByLaunchAsOftenAsNeeded) {
  ScriptedShell shell(AnswerByLaunch([](const RecordedLaunch& launch) {
    return launch.parameters == L"-x" ? FailsWith(ERROR_FILE_NOT_FOUND) : EndsWith(0);
  }));
  SHELLEXECUTEINFOW refused = Execution();
  SHELLEXECUTEINFOW started = Execution();
  started.lpParameters = L"-y";

  EXPECT_FALSE(::ShellExecuteExW(&refused));
  EXPECT_TRUE(::ShellExecuteExW(&started));
}

}  // namespace
}  // namespace nhupdate_test
