#include "tests/support/scripted_shell.h"

#include <gtest/gtest.h>

#include <utility>

namespace nhupdate_test {

namespace {

std::wstring TextOf(const wchar_t* text) {
  return text == nullptr ? L"(null)" : text;
}

}  // namespace

ScriptedShell::ScriptedShell(std::vector<ShellAnswer> script)
    : ScriptedShell(std::move(script), nullptr) {}

ScriptedShell::ScriptedShell(AnswerByLaunch answers)
    : ScriptedShell({}, std::move(answers.answer)) {}

ScriptedShell::ScriptedShell(std::vector<ShellAnswer> script,
                             std::function<ShellAnswer(const RecordedLaunch&)> answer)
    : script_(std::move(script)),
      answer_(std::move(answer)),
      execute_(std::bind_front(&ScriptedShell::Launch, this)),
      wait_(std::bind_front(&ScriptedShell::Wait, this)),
      exit_code_(std::bind_front(&ScriptedShell::ReadExitCode, this)),
      close_([this](HANDLE handle) {
        // A process is a handle of the kernel, and closed as one.
        if (const auto child = open_.extract(handle)) {
          events_.push_back("close " + std::to_string(child.mapped().number));
        }
      }) {}

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

std::optional<DWORD> ScriptedShell::Wait(HANDLE handle, DWORD milliseconds) {
  const auto child = open_.find(handle);
  if (child == open_.end()) {
    return std::nullopt;
  }
  const std::string limit =
      milliseconds == INFINITE ? "ever" : std::to_string(milliseconds) + " ms";
  events_.push_back("wait " + std::to_string(child->second.number) + " for " + limit);
  if (child->second.answer.during_wait) {
    child->second.answer.during_wait();
  }
  return WAIT_OBJECT_0;
}

std::optional<BOOL> ScriptedShell::ReadExitCode(HANDLE handle, DWORD* exit_code) {
  const auto child = open_.find(handle);
  if (child == open_.end()) {
    return std::nullopt;
  }
  events_.push_back("exit code " + std::to_string(child->second.number));
  if (!child->second.answer.is_exit_code_readable) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
  }
  *exit_code = child->second.answer.exit_code;
  return TRUE;
}

}  // namespace nhupdate_test
