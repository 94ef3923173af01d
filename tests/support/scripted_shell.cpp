#include "tests/support/scripted_shell.h"

#include <gtest/gtest.h>

#include <utility>

namespace nhupdate_test {

namespace {

std::wstring TextOf(const wchar_t* text) {
  return text == nullptr ? L"(null)" : text;
}

}  // namespace

ShellAnswer FailsWith(DWORD error) {
  ShellAnswer answer;
  answer.is_started = false;
  answer.error = error;
  return answer;
}

ShellAnswer EndsWith(DWORD exit_code, std::function<void()> during_wait) {
  ShellAnswer answer;
  answer.exit_code = exit_code;
  answer.during_wait = std::move(during_wait);
  return answer;
}

ShellAnswer EndsUnreadably() {
  ShellAnswer answer;
  answer.is_exit_code_readable = false;
  return answer;
}

ShellAnswer HandedOver() {
  ShellAnswer answer;
  answer.has_process = false;
  return answer;
}

ScriptedShell::ScriptedShell(std::vector<ShellAnswer> script)
    : ScriptedShell(std::move(script), nullptr) {}

ScriptedShell::ScriptedShell(AnswerByLaunch answers)
    : ScriptedShell({}, std::move(answers.answer)) {}

ScriptedShell::ScriptedShell(std::vector<ShellAnswer> script,
                             std::function<ShellAnswer(const RecordedLaunch&)> answer)
    : script_(std::move(script)),
      answer_(std::move(answer)),
      process_id_([] { return kProcessId; }),
      execute_([this](SHELLEXECUTEINFOW* execution) { return Launch(execution); }),
      wait_([this](HANDLE handle, DWORD milliseconds) { return Wait(handle, milliseconds); }),
      exit_code_([this](HANDLE handle, DWORD* code) { return ReadExitCode(handle, code); }),
      close_([this](HANDLE handle) { return Close(handle); }) {}

ScriptedShell::~ScriptedShell() {
  if (!answer_) {
    EXPECT_EQ(launches_.size(), script_.size()) << "launches made and launches in the script";
  }
  for (const auto& [handle, child] : open_) {
    close_.Original()(handle);
  }
}

ShellAnswer ScriptedShell::NextAnswer(const RecordedLaunch& launch) const {
  if (answer_) {
    return answer_(launch);
  }
  if (launches_.size() > script_.size()) {
    ADD_FAILURE() << "Nobody expects a launch of " << testing::PrintToString(launch.file);
    return FailsWith(ERROR_INVALID_FUNCTION);
  }
  return script_[launches_.size() - 1];
}

BOOL ScriptedShell::Launch(SHELLEXECUTEINFOW* execution) {
  launches_.push_back({*execution, TextOf(execution->lpVerb), TextOf(execution->lpFile),
                       TextOf(execution->lpParameters), TextOf(execution->lpDirectory)});
  const std::size_t number = launches_.size();
  events_.push_back("launch " + std::to_string(number));
  const ShellAnswer answer = NextAnswer(launches_.back());
  if (!answer.is_started) {
    ::SetLastError(answer.error);
    return FALSE;
  }
  if (answer.has_process) {
    execution->hProcess = ::CreateEventW(nullptr, TRUE, TRUE, nullptr);
    open_[execution->hProcess] = {number, answer};
  }
  return TRUE;
}

DWORD ScriptedShell::Wait(HANDLE handle, DWORD milliseconds) {
  const auto child = open_.find(handle);
  if (child == open_.end()) {
    return wait_.Original()(handle, milliseconds);
  }
  const std::string limit =
      milliseconds == INFINITE ? "ever" : std::to_string(milliseconds) + " ms";
  events_.push_back("wait " + std::to_string(child->second.number) + " for " + limit);
  if (child->second.answer.during_wait) {
    child->second.answer.during_wait();
  }
  return WAIT_OBJECT_0;
}

BOOL ScriptedShell::ReadExitCode(HANDLE handle, DWORD* exit_code) {
  const auto child = open_.find(handle);
  if (child == open_.end()) {
    return exit_code_.Original()(handle, exit_code);
  }
  events_.push_back("exit code " + std::to_string(child->second.number));
  if (!child->second.answer.is_exit_code_readable) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
  }
  *exit_code = child->second.answer.exit_code;
  return TRUE;
}

BOOL ScriptedShell::Close(HANDLE handle) {
  const auto child = open_.find(handle);
  if (child != open_.end()) {
    events_.push_back("close " + std::to_string(child->second.number));
    open_.erase(child);
  }
  return close_.Original()(handle);
}

}  // namespace nhupdate_test
