#include "tests/reliances/child.h"

#include <cstdlib>
#include <cwchar>

#include "base/windows.h"
#include "tests/reliances/reliance.h"

namespace nhupdate_test {

namespace {

constexpr wchar_t kChildMark[] = L"--child";
constexpr DWORD kSleepMs = 60'000;

int LoadError(const wchar_t* name) {
  const nhupdate::UniqueLibrary library(::LoadLibraryW(name));
  const DWORD error = ::GetLastError();
  return library.IsValid() ? 0 : static_cast<int>(error);
}

}  // namespace

std::wstring OwnPath() {
  std::wstring path(32768, L'\0');
  path.resize(::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

nhupdate::UniqueKernelHandle StartChild(const std::wstring& program, const std::wstring& task,
                                        const std::wstring& folder) {
  std::wstring command_line = L"\"" + program + L"\" " + kChildMark + L" " + task;
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION information = {};
  // Without a console, since Wine has a process for each of them, which never ends when the child
  // is ended as it begins.
  if (!::CreateProcessW(program.c_str(), command_line.data(), nullptr, nullptr, FALSE,
                        DETACHED_PROCESS, nullptr, folder.empty() ? nullptr : folder.c_str(),
                        &startup, &information)) {
    GiveUp("start", program);
  }
  ::CloseHandle(information.hThread);
  return nhupdate::UniqueKernelHandle(information.hProcess);
}

DWORD ExitCodeOf(const nhupdate::UniqueKernelHandle& process) {
  DWORD code = 0;
  if (::WaitForSingleObject(process.Get(), kSleepMs) != WAIT_OBJECT_0 ||
      !::GetExitCodeProcess(process.Get(), &code)) {
    GiveUp("wait for", L"a child");
  }
  return code;
}

CSleepingChild::CSleepingChild(const std::wstring& program)
    : process_(StartChild(program, L"sleep")) {}

CSleepingChild::~CSleepingChild() {
  ::TerminateProcess(process_.Get(), 0);
  ::WaitForSingleObject(process_.Get(), kSleepMs);
}

DWORD CSleepingChild::Id() const {
  return ::GetProcessId(process_.Get());
}

std::optional<int> DoTask(int count, wchar_t** arguments) {
  if (count < 3 || std::wcscmp(arguments[1], kChildMark) != 0) {
    return std::nullopt;
  }
  const std::wstring task = arguments[2];
  const wchar_t* const object = count > 3 ? arguments[3] : L"";
  if (task == L"sleep") {
    ::Sleep(kSleepMs);
    return 0;
  }
  if (task == L"exit") {
    return static_cast<int>(std::wcstol(object, nullptr, 10));
  }
  if (task == L"error-mode") {
    return static_cast<int>(::GetErrorMode());
  }
  if (task == L"load") {
    return LoadError(object);
  }
  if (task == L"load-safely") {
    ::SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    return LoadError(object);
  }
  return std::nullopt;
}

}  // namespace nhupdate_test
