#pragma once

// Takes the place of the shell and of the programs that are started through it. Each launch is
// written down and answered by the next line of a script:
//
//   ScriptedShell shell({EndsWith(0), FailsWith(ERROR_ACCESS_DENIED)});
//
// Real handles of the kernel stand for the processes, so one that isn't closed is a real leak.

#include "tests/support/windows_basics.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate_test {

struct ShellAnswer {
  bool is_started = true;
  DWORD error = ERROR_SUCCESS;  // when it isn't
  bool has_process = true;      // when it is
  bool is_exit_code_readable = true;
  DWORD exit_code = 0;
  std::function<void()> during_wait = nullptr;  // what the process does while it is waited for
};

[[nodiscard]] inline ShellAnswer FailsWith(DWORD error) {
  return {.is_started = false, .error = error};
}

[[nodiscard]] inline ShellAnswer EndsWith(DWORD exit_code,
                                          std::function<void()> during_wait = nullptr) {
  return {.exit_code = exit_code, .during_wait = std::move(during_wait)};
}

[[nodiscard]] inline ShellAnswer EndsUnreadably() {
  return {.is_exit_code_readable = false};
}

// The launch succeeds but there is no process: another one took over the work.
[[nodiscard]] inline ShellAnswer HandedOver() {
  return {.has_process = false};
}

struct RecordedLaunch {
  SHELLEXECUTEINFOW record = {};  // as passed; its texts no longer exist, so copies follow
  std::wstring verb;
  std::wstring file;
  std::wstring parameters;
  std::wstring folder;
};

// Answers launches by what is launched, however many there are.
struct AnswerByLaunch {
  explicit AnswerByLaunch(std::function<ShellAnswer(const RecordedLaunch&)> function)
      : answer(std::move(function)) {}
  std::function<ShellAnswer(const RecordedLaunch&)> answer;
};

class ScriptedShell {
 public:
  // What the code under test takes for the id of its own process.
  static constexpr DWORD kProcessId = 700001;

  // A launch without a line in the script is a test failure, and so is a line without a launch.
  explicit ScriptedShell(std::vector<ShellAnswer> script);
  explicit ScriptedShell(AnswerByLaunch answers);
  ~ScriptedShell();

  [[nodiscard]] const std::vector<RecordedLaunch>& Launches() const { return launches_; }

  // What was done with the started processes, which are numbered from 1 as they are launched:
  // "launch 1", "wait 1 for ever", "wait 1 for 5 ms", "exit code 1", "close 1".
  [[nodiscard]] const std::vector<std::string>& Events() const { return events_; }

  [[nodiscard]] std::size_t OpenProcesses() const { return open_.size(); }

 private:
  struct Child {
    std::size_t number = 0;
    ShellAnswer answer;
  };

  ScriptedShell(std::vector<ShellAnswer> script,
                std::function<ShellAnswer(const RecordedLaunch&)> answer);

  ShellAnswer NextAnswer(const RecordedLaunch& launch) const;
  BOOL Launch(SHELLEXECUTEINFOW* execution);
  std::optional<DWORD> Wait(HANDLE handle, DWORD milliseconds);
  std::optional<BOOL> ReadExitCode(HANDLE handle, DWORD* exit_code);

  std::vector<ShellAnswer> script_;
  std::function<ShellAnswer(const RecordedLaunch&)> answer_;  // instead of the script
  std::vector<RecordedLaunch> launches_;
  std::vector<std::string> events_;
  std::map<HANDLE, Child> open_;
  INTERPOSER(GetCurrentProcessId) process_id_{[] { return kProcessId; }};
  INTERPOSER(ShellExecuteExW) execute_;
  INTERPOSER(WaitForSingleObject) wait_;
  INTERPOSER(GetExitCodeProcess) exit_code_;
  INTERPOSER(CloseHandle) close_;
};

}  // namespace nhupdate_test
