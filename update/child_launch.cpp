#include "update/child_launch.h"

#include <utility>

#include "base/existence.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate {

namespace {

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
  ::WaitForSingleObject(process.Get(), INFINITE);  // where this fails, so does the next
  DWORD exit_code = 0;
  if (!::GetExitCodeProcess(process.Get(), &exit_code)) {
    return std::nullopt;
  }
  return exit_code;
}

}  // namespace

std::wstring CLaunchParameters::Text() const {
  return with_process_id_ ? Format(*with_process_id_, ::GetCurrentProcessId()) : Format(*plain_);
}

LaunchOutcome Launch(const ChildLaunch& launch, const std::wstring& folder, const CLog& log) {
  const std::wstring path = folder + launch.executable;
  const std::wstring parameters = launch.parameters.Text();
  log.WriteText(LogLevel::kInformation, L"Launch folder : " + folder);
  log.WriteText(LogLevel::kInformation, L"Launch path : " + path);
  log.WriteText(LogLevel::kInformation, L"Launch param : " + parameters);

  LaunchOutcome outcome;
  if (!Exists(path)) {
    log.Write(LogLevel::kError, launch.not_found_message, path);
    return outcome;
  }

  UniqueKernelHandle process;
  const std::optional<DWORD> error = Execute(folder, path, parameters, process);
  if (error) {
    log.Write(LogLevel::kError, launch.failure_message, *error);
    outcome.state = LaunchState::kNotLaunched;
    return outcome;
  }

  log.Write(LogLevel::kInformation, launch.success_message);
  outcome.state = LaunchState::kLaunched;
  if (launch.waits) {
    outcome.exit_code = WaitForExitCode(process);
    if (outcome.exit_code) {
      log.Write(LogLevel::kInformation, launch.exit_message, *outcome.exit_code);
    }
    outcome.process = std::move(process);
  }
  return outcome;
}

}  // namespace nhupdate
