#include "tests/support/scripted_shell.h"

#include <gtest/gtest-spi.h>

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

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

TEST(ScriptedShellTest, CountsWhatIsLeftOpenAndGivesNoProcessForWorkThatIsHandedOver) {
  ScriptedShell shell({EndsWith(0), HandedOver()});
  SHELLEXECUTEINFOW left_open = Execution();
  SHELLEXECUTEINFOW handed_over = Execution();

  EXPECT_TRUE(::ShellExecuteExW(&left_open));
  EXPECT_TRUE(::ShellExecuteExW(&handed_over));

  EXPECT_EQ(shell.OpenProcesses(), 1u);
  EXPECT_EQ(handed_over.hProcess, nullptr);
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

// The messages of the test failures when that many launches are made.
std::vector<std::string> FailuresOf(std::vector<ShellAnswer> script, int launches) {
  testing::TestPartResultArray failures;
  {
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
    const ScriptedShell shell(std::move(script));
    for (int launch = 0; launch < launches; ++launch) {
      SHELLEXECUTEINFOW execution = Execution();
      ::ShellExecuteExW(&execution);
    }
  }
  std::vector<std::string> messages;
  for (int index = 0; index < failures.size(); ++index) {
    messages.push_back(failures.GetTestPartResult(index).message());
  }
  return messages;
}

TEST(ScriptedShellTest, FailsTheTestAtALaunchTooManyAndWhereOneIsMissing) {
  EXPECT_THAT(FailuresOf({}, 1),
              ElementsAre(AllOf(HasSubstr("Nobody expects a launch of"), HasSubstr("program.exe")),
                          HasSubstr("launches in the script")));
  EXPECT_THAT(FailuresOf({EndsWith(0)}, 0), ElementsAre(HasSubstr("launches in the script")));
  EXPECT_THAT(FailuresOf({EndsWith(0)}, 1), IsEmpty());
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
