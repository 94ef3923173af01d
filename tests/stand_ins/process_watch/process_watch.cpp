// Runs a program and shows every process that comes of it, also those that outlive their parents,
// with its command line and exit code:
//
//   process_watch.exe PROGRAM ARGUMENTS...
//
// Ends with the exit code of the program itself when all of them have ended. When they have not
// after two minutes it ends those that are left, and itself with 255.

#include <map>
#include <string>
#include <vector>

#include "base/console.h"
#include "base/paths.h"
#include "base/unique_handle.h"
#include "base/windows.h"

// These need <windows.h> first.
#include <shellapi.h>
#include <winternl.h>

namespace {

using nhupdate::UniqueKernelHandle;

constexpr DWORD kLimitMs = 120'000;  // for all of them together
constexpr int kWatchFailed = 255;

struct WatchedProcess {
  UniqueKernelHandle handle;
  std::wstring description;
};

template <typename Value>
bool ReadFrom(HANDLE process, const void* address, Value& value) {
  SIZE_T read = 0;
  return ::ReadProcessMemory(process, address, &value, sizeof(value), &read) != FALSE &&
         read == sizeof(value);
}

// The command line as the process itself would see it; empty when it can't be read.
std::wstring CommandLineOf(HANDLE process) {
  using Query = NTSTATUS(NTAPI*)(HANDLE, PROCESSINFOCLASS, void*, ULONG, ULONG*);
  const auto query = reinterpret_cast<Query>(reinterpret_cast<void (*)()>(
      ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess")));
  PROCESS_BASIC_INFORMATION basic = {};
  PEB environment = {};
  RTL_USER_PROCESS_PARAMETERS parameters = {};
  if (query == nullptr ||
      query(process, ProcessBasicInformation, &basic, sizeof(basic), nullptr) < 0 ||
      !ReadFrom(process, basic.PebBaseAddress, environment) ||
      !ReadFrom(process, environment.ProcessParameters, parameters)) {
    return {};
  }
  std::wstring text(parameters.CommandLine.Length / sizeof(wchar_t), L'\0');
  SIZE_T read = 0;
  ::ReadProcessMemory(process, parameters.CommandLine.Buffer, text.data(),
                      parameters.CommandLine.Length, &read);
  return text;
}

std::wstring ImageNameOf(HANDLE process) {
  std::wstring path(MAX_PATH, L'\0');
  DWORD units = MAX_PATH;
  if (!::QueryFullProcessImageNameW(process, 0, path.data(), &units)) {
    return {};
  }
  path.resize(units);
  return nhupdate::FileName(path);
}

// The file name of the program, and its arguments.
std::wstring Describe(HANDLE process) {
  // A process is announced before it has been told what it is to run.
  constexpr int kTries = 200;
  constexpr DWORD kTryMs = 5;
  std::wstring description = ImageNameOf(process);
  std::wstring command_line = CommandLineOf(process);
  // Of one that has ended nothing more is to be had, and meanwhile others would end unseen.
  for (int tries = 1; tries < kTries && (description.empty() || command_line.empty()) &&
                      ::WaitForSingleObject(process, kTryMs) == WAIT_TIMEOUT;
       ++tries) {
    description = ImageNameOf(process);
    command_line = CommandLineOf(process);
  }
  int count = 0;
  wchar_t** arguments =
      command_line.empty() ? nullptr : ::CommandLineToArgvW(command_line.c_str(), &count);
  for (int index = 1; arguments != nullptr && index < count; ++index) {
    description += std::wstring(L" ") + arguments[index];
  }
  ::LocalFree(arguments);
  return description;
}

std::wstring Quoted(const std::wstring& argument) {
  return argument.find(L' ') == std::wstring::npos ? argument : L"\"" + argument + L"\"";
}

class ProcessWatch {
 public:
  bool Start(std::wstring command_line) {
    job_.Reset(::CreateJobObjectW(nullptr, nullptr));
    port_.Reset(::CreateIoCompletionPort(INVALID_HANDLE_VALUE, nullptr, 0, 1));
    JOBOBJECT_ASSOCIATE_COMPLETION_PORT association = {this, port_.Get()};
    ::SetInformationJobObject(job_.Get(), JobObjectAssociateCompletionPortInformation, &association,
                              sizeof(association));
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION information = {};
    if (!::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED,
                          nullptr, nullptr, &startup, &information)) {
      return false;
    }
    const UniqueKernelHandle thread(information.hThread);
    first_.Reset(information.hProcess);
    if (!::AssignProcessToJobObject(job_.Get(), first_.Get())) {
      ::TerminateProcess(first_.Get(), kWatchFailed);
      return false;
    }
    ::ResumeThread(thread.Get());
    return true;
  }

  // Shows the processes until none is left. Returns the exit code of the first one.
  int Watch() {
    DWORD message = 0;
    ULONG_PTR key = 0;
    OVERLAPPED* process_id = nullptr;
    while (::GetQueuedCompletionStatus(port_.Get(), &message, &key, &process_id, TimeLeft())) {
      const DWORD id = static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(process_id));
      if (message == JOB_OBJECT_MSG_NEW_PROCESS) {
        Add(id);
      } else if (message == JOB_OBJECT_MSG_EXIT_PROCESS ||
                 message == JOB_OBJECT_MSG_ABNORMAL_EXIT_PROCESS) {
        ShowEnd(id);
        if (processes_.empty()) {
          DWORD exit_code = kWatchFailed;
          ::GetExitCodeProcess(first_.Get(), &exit_code);
          return static_cast<int>(exit_code);
        }
      }
    }
    ::TerminateJobObject(job_.Get(), kWatchFailed);
    nhupdate::PrintConsoleError(L"  ended after %d seconds\n", kLimitMs / 1000);
    return kWatchFailed;
  }

 private:
  [[nodiscard]] DWORD TimeLeft() const {
    const ULONGLONG now = ::GetTickCount64();
    return now < end_ ? static_cast<DWORD>(end_ - now) : 0;
  }

  void Add(DWORD id) {
    UniqueKernelHandle process(
        ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ | SYNCHRONIZE, FALSE, id));
    const std::wstring description = Describe(process.Get());
    // The system's own: one for each console, one for the desktop.
    if (description.starts_with(L"conhost.exe") || description.starts_with(L"explorer.exe")) {
      return;
    }
    nhupdate::PrintConsoleError(L"  started  %s\n", description);
    processes_[id] = {std::move(process), description};
  }

  void ShowEnd(DWORD id) {
    const auto found = processes_.find(id);
    if (found == processes_.end()) {
      return;
    }
    DWORD exit_code = 0;
    ::WaitForSingleObject(found->second.handle.Get(), TimeLeft());
    ::GetExitCodeProcess(found->second.handle.Get(), &exit_code);
    nhupdate::PrintConsoleError(L"  exit %d   %s\n", exit_code, found->second.description);
    processes_.erase(found);
  }

  const ULONGLONG end_ = ::GetTickCount64() + kLimitMs;
  UniqueKernelHandle job_;
  UniqueKernelHandle port_;
  UniqueKernelHandle first_;
  std::map<DWORD, WatchedProcess> processes_;
};

}  // namespace

int main() {
  int count = 0;
  wchar_t** arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::wstring command_line;
  for (int index = 1; arguments != nullptr && index < count; ++index) {
    command_line += (index > 1 ? L" " : L"") + Quoted(arguments[index]);
  }
  ::LocalFree(arguments);
  ProcessWatch watch;
  return watch.Start(command_line) ? watch.Watch() : kWatchFailed;
}
