// Processes, boxes, and the libraries that come to the executable.

#include <cstddef>
#include <tuple>

#include "tests/support/fence_ground.h"
#include "tests/support/fenced_function.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate_test {

namespace {

void CheckProgram(const char* function, const std::wstring& program) {
  if (!IsProgramInside(program)) {
    RefuseUnlessAllowed(function, program);
  }
}

std::wstring FirstArgument(const std::wstring& command_line) {
  const bool is_quoted = command_line.starts_with(L"\"");
  const std::size_t begin = is_quoted ? 1 : 0;
  return command_line.substr(begin, command_line.find(is_quoted ? L'"' : L' ', begin) - begin);
}

constexpr auto kCreateProcess = [](const char* function, const wchar_t* program,
                                   const wchar_t* command_line, const auto&...) {
  const std::wstring line = command_line != nullptr ? command_line : L"";
  CheckProgram(function, program != nullptr ? program : FirstArgument(line));
};

// With a user's token before the same arguments.
constexpr auto kCreateProcessAs = [](const char* function, HANDLE, const auto&... arguments) {
  kCreateProcess(function, arguments...);
};

constexpr auto kAdmitCreated = [](BOOL is_started, const auto&... arguments) {
  // The description of the process is the last of them.
  constexpr std::size_t kLast = sizeof...(arguments) - 1;
  PROCESS_INFORMATION* const information = std::get<kLast>(std::tie(arguments...));
  if (is_started) {
    AdmitProcess(information->dwProcessId);
  }
};

constexpr auto kShellExecute = [](const char* function, HWND, const wchar_t*, const wchar_t* file,
                                  const auto&...) {
  CheckProgram(function, file != nullptr ? file : L"");
};

constexpr auto kShellExecuteEx = [](const char* function, SHELLEXECUTEINFOW* execution) {
  CheckProgram(function, execution->lpFile != nullptr ? execution->lpFile : L"");
};

constexpr auto kAdmitExecuted = [](BOOL is_started, SHELLEXECUTEINFOW* execution) {
  if (is_started && execution->hProcess != nullptr) {
    AdmitProcess(ProcessIdOf(execution->hProcess));
  }
};

void CheckProcess(const char* function, DWORD process_id) {
  if (!IsProcessInside(process_id)) {
    RefuseUnlessAllowed(function, L"process " + std::to_wstring(process_id));
  }
}

// To look at a process is harmless.
constexpr auto kOpenProcess = [](const char* function, DWORD access, BOOL, DWORD process_id) {
  constexpr DWORD kHarmless =
      PROCESS_QUERY_INFORMATION | PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_VM_READ | SYNCHRONIZE;
  if ((access & ~kHarmless) != 0) {
    CheckProcess(function, process_id);
  }
};

// A handle that doesn't tell its process was looked at when it was opened.
constexpr auto kTerminateProcess = [](const char* function, HANDLE process, UINT) {
  const DWORD process_id = ProcessIdOf(process);
  if (process_id != 0) {
    CheckProcess(function, process_id);
  }
};

// A box would wait for somebody who isn't there.
constexpr auto kBox = [](const char* function, HWND, auto text, const auto&...) {
  if (!IsEverythingInside()) {
    std::wstring said;
    for (auto unit = text; unit != nullptr && *unit != 0; ++unit) {
      said += static_cast<wchar_t>(*unit);
    }
    RefuseUnlessAllowed(function, said);
  }
};

// What concerns all of the machine.
constexpr auto kShutdown = [](const char* function, const auto&...) {
  RefuseUnlessAllowed(function, L"the whole system");
};

constexpr auto kFenceInLoaded = [](HMODULE library, const auto&...) {
  if (IsLibraryInside(library)) {
    FenceInModule(library);
  }
};

}  // namespace

const std::vector<FencedFunction>& FencedProcessCalls() {
  static const std::vector<FencedFunction> calls = {
      // A program may do anything, so only stand-ins are started.
      NHUPDATE_FENCED(CreateProcessW, kCreateProcess, kAdmitCreated),
      NHUPDATE_FENCED(CreateProcessAsUserW, kCreateProcessAs, kAdmitCreated),
      NHUPDATE_FENCED(ShellExecuteW, kShellExecute),
      NHUPDATE_FENCED(ShellExecuteExW, kShellExecuteEx, kAdmitExecuted),
      // A process with the name that a test looks for may be somebody's own.
      NHUPDATE_FENCED(OpenProcess, kOpenProcess),
      NHUPDATE_FENCED(TerminateProcess, kTerminateProcess),
      NHUPDATE_FENCED(MessageBoxW, kBox),
      NHUPDATE_FENCED(MessageBoxExW, kBox),
      NHUPDATE_FENCED(MessageBoxA, kBox),
      NHUPDATE_FENCED(ExitWindowsEx, kShutdown),
      NHUPDATE_FENCED(InitiateSystemShutdownExW, kShutdown),
      // A library has an import table of its own.
      NHUPDATE_FENCED(LoadLibraryW, CheckNothing{}, kFenceInLoaded),
      NHUPDATE_FENCED(LoadLibraryExW, CheckNothing{}, kFenceInLoaded),
  };
  return calls;
}

}  // namespace nhupdate_test
