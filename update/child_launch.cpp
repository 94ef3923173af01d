#include "update/child_launch.h"

#include <tuple>
#include <utility>

#include "app/manager_center.h"
#include "base/existence.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate {

namespace {

std::wstring ParametersOf(const ChildLaunch& launch) {
  if (const auto* with_parent = std::get_if<FormatString<DWORD>>(&launch.parameters)) {
    return Format(*with_parent, ::GetCurrentProcessId());
  }
  return Format(std::get<FormatString<>>(launch.parameters));
}

// Starts the program without a window. Returns the error, or nothing and the process, which is
// none when the shell handed the work to a process that was running already.
std::optional<DWORD> Execute(const std::wstring& folder, const std::wstring& path,
                             const std::wstring& parameters, UniqueKernelHandle& process) {
  SHELLEXECUTEINFOW execution = {};
  execution.cbSize = sizeof(execution);
  execution.fMask = SEE_MASK_NOCLOSEPROCESS;
  execution.lpVerb = L"open";
  execution.lpFile = path.c_str();
  execution.lpParameters = parameters.c_str();
  execution.lpDirectory = folder.c_str();
  execution.nShow = SW_HIDE;
  if (!::ShellExecuteExW(&execution)) {
    const DWORD error = ::GetLastError();
    return error;
  }
  process.Reset(execution.hProcess);
  return std::nullopt;
}

// There is no time limit: an update takes as long as the network and the user let it.
std::optional<DWORD> WaitForExitCode(const UniqueKernelHandle& process) {
  std::ignore = ::WaitForSingleObject(process.Get(), INFINITE);  // the exit code tells
  DWORD exit_code = 0;
  if (!::GetExitCodeProcess(process.Get(), &exit_code)) {
    return std::nullopt;
  }
  return exit_code;
}

}  // namespace

LaunchOutcome CManagerCenter::Launch(const ChildLaunch& launch, const std::wstring& folder) {
  const std::wstring path = folder + launch.executable;
  const std::wstring parameters = ParametersOf(launch);
  LogText(LogLevel::kInformation, L"Launch folder : " + folder);
  LogText(LogLevel::kInformation, L"Launch path : " + path);
  LogText(LogLevel::kInformation, L"Launch param : " + parameters);

  LaunchOutcome outcome;
  if (!Exists(path)) {
    Log(LogLevel::kError, launch.not_found_message, path);
    return outcome;
  }

  UniqueKernelHandle process;
  const std::optional<DWORD> error = Execute(folder, path, parameters, process);
  if (error) {
    Log(LogLevel::kError, launch.failure_message, *error);
    outcome.state = LaunchState::kFailed;
    return outcome;
  }

  Log(LogLevel::kInformation, launch.success_message);
  outcome.state = LaunchState::kStarted;
  if (launch.exit_message) {
    outcome.exit_code = WaitForExitCode(process);
    if (outcome.exit_code) {
      Log(LogLevel::kInformation, *launch.exit_message, *outcome.exit_code);
    }
    outcome.process = std::move(process);
  }
  return outcome;
}

}  // namespace nhupdate
