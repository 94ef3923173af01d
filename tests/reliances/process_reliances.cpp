// Starting, looking at and ending processes; mutexes and memory that they share.

#include <thread>

#include "tests/reliances/child.h"
#include "tests/reliances/reliance.h"

#include <psapi.h>     // needs <windows.h> first
#include <shellapi.h>  // likewise

namespace nhupdate_test {

namespace {

// As the program starts its children, but without the shell's own boxes.
std::string Start(const std::wstring& path, const wchar_t* parameters,
                  nhupdate::UniqueKernelHandle& process) {
  SHELLEXECUTEINFOW execution = {};
  execution.cbSize = sizeof(execution);
  execution.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
  execution.lpVerb = L"open";
  execution.lpFile = path.c_str();
  execution.lpParameters = parameters;
  execution.nShow = SW_HIDE;
  const std::string error = ErrorOf(::ShellExecuteExW(&execution) != FALSE);
  process.Reset(execution.hProcess);
  return error;
}

std::string StartError(const std::wstring& path) {
  nhupdate::UniqueKernelHandle process;
  return Start(path, L"", process);
}

std::string OpenError(DWORD access, DWORD process_id) {
  const nhupdate::UniqueKernelHandle process(::OpenProcess(access, FALSE, process_id));
  return ErrorOf(process.IsValid());
}

std::wstring CopyOfThisProgram(const std::wstring& folder) {
  std::wstring copy = folder + L"\\nhupdate_copy.exe";
  if (!::CopyFileW(OwnPath().c_str(), copy.c_str(), TRUE)) {
    GiveUp("copy to", copy);
  }
  return copy;
}

constexpr DWORD kLookAccess = PROCESS_QUERY_INFORMATION | PROCESS_VM_READ;

std::wstring SharedName() {
  return L"Local\\nhupdate_reliances_" + std::to_wstring(::GetCurrentProcessId());
}

HANDLE MakeMemory() {
  return ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(int),
                              SharedName().c_str());
}

}  // namespace

Reliances ProcessReliances() {
  return {
      {"ShellExecuteExW, a missing file", "2", Wine::kAsWindows,
       [](const std::wstring& folder) { return StartError(folder + L"\\none.exe"); }},
      {"ShellExecuteExW, a program that is no program", "193 or 216", Wine::kAsWindows,
       [](const std::wstring& folder) {
         return StartError(MakeFile(folder + L"\\garbage.exe", "no program"));
       }},
      {"ShellExecuteExW, the exit code of what it has started", "37", Wine::kAsWindows,
       [](const std::wstring&) {
         nhupdate::UniqueKernelHandle process;
         const std::string error = Start(OwnPath(), L"--child exit 37", process);
         return process.IsValid() ? std::to_string(ExitCodeOf(process)) : error;
       }},
      {"GetExitCodeProcess, a process that lives", "259", Wine::kAsWindows,
       [](const std::wstring&) {
         const CSleepingChild child;
         DWORD code = 0;
         ::GetExitCodeProcess(child.Process().Get(), &code);
         return std::to_string(code);
       }},
      {"GetExitCodeProcess, a process that ended with -1", "4294967295", Wine::kAsWindows,
       [](const std::wstring&) {
         return std::to_string(ExitCodeOf(StartChild(OwnPath(), L"exit -1")));
       }},
      {"TerminateProcess, the exit code of the process", "0", Wine::kAsWindows,
       [](const std::wstring&) {
         const CSleepingChild child;
         const nhupdate::UniqueKernelHandle process(
             ::OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE, FALSE, child.Id()));
         ::TerminateProcess(process.Get(), 0);
         return std::to_string(ExitCodeOf(child.Process()));
       }},
      {"TerminateProcess, without the right to it", "5", Wine::kAsWindows,
       [](const std::wstring&) {
         const CSleepingChild child;
         const nhupdate::UniqueKernelHandle process(::OpenProcess(SYNCHRONIZE, FALSE, child.Id()));
         return ErrorOf(::TerminateProcess(process.Get(), 0) != FALSE);
       }},
      {"OpenProcess, the idle process", "87", Wine::kAsWindows,
       [](const std::wstring&) { return OpenError(SYNCHRONIZE | PROCESS_TERMINATE, 0); }},
      {"OpenProcess, looking into the system's process", "5", Wine::kDiffers,
       [](const std::wstring&) { return OpenError(kLookAccess, 4); }},
      {"QueryFullProcessImageNameW, another process of this program", "the same path",
       Wine::kAsWindows,
       [](const std::wstring&) -> std::string {
         const CSleepingChild child;
         const nhupdate::UniqueKernelHandle process(::OpenProcess(kLookAccess, FALSE, child.Id()));
         std::wstring path(1024, L'\0');
         DWORD units = static_cast<DWORD>(path.size());
         if (!::QueryFullProcessImageNameW(process.Get(), 0, path.data(), &units)) {
           return ErrorOf(false);
         }
         return path.substr(0, units) == OwnPath() ? "the same path" : "another path";
       }},
      {"QueryFullProcessImageNameW, too little room", "122", Wine::kAsWindows,
       [](const std::wstring&) {
         wchar_t unit = L'\0';
         DWORD units = 1;
         return ErrorOf(::QueryFullProcessImageNameW(::GetCurrentProcess(), 0, &unit, &units) !=
                        FALSE);
       }},
      {"DeleteFileW, a program that is running", "5", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring program = CopyOfThisProgram(folder);
         const CSleepingChild child(program);
         return ErrorOf(::DeleteFileW(program.c_str()) != FALSE);
       }},
      {"CopyFileW, over a program that is running", "32", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring program = CopyOfThisProgram(folder);
         const CSleepingChild child(program);
         return ErrorOf(::CopyFileW(OwnPath().c_str(), program.c_str(), FALSE) != FALSE);
       }},
      {"MoveFileW, a program that is running", "0", Wine::kAsWindows,
       [](const std::wstring& folder) {
         const std::wstring program = CopyOfThisProgram(folder);
         const CSleepingChild child(program);
         return ErrorOf(::MoveFileW(program.c_str(), (folder + L"\\other.exe").c_str()) != FALSE);
       }},
      {"SetThreadErrorMode, the mode that a child inherits", "that of the process",
       Wine::kAsWindows,
       [](const std::wstring&) -> std::string {
         const DWORD mode_of_process = ::GetErrorMode();
         const DWORD old_mode = ::GetThreadErrorMode();
         ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, nullptr);
         const DWORD inherited = ExitCodeOf(StartChild(OwnPath(), L"error-mode"));
         ::SetThreadErrorMode(old_mode, nullptr);
         return inherited == mode_of_process ? "that of the process" : "another";
       }},
      {"WaitForSingleObject, a mutex whose owner ended", "128", Wine::kAsWindows,
       [](const std::wstring&) {
         const nhupdate::UniqueKernelHandle mutex(::CreateMutexW(nullptr, FALSE, nullptr));
         std::thread([&] { ::WaitForSingleObject(mutex.Get(), INFINITE); }).join();
         const DWORD result = ::WaitForSingleObject(mutex.Get(), 0);
         ::ReleaseMutex(mutex.Get());
         return std::to_string(result);
       }},
      {"CreateMutexExW, a name that is taken", "183", Wine::kAsWindows,
       [](const std::wstring&) {
         const std::wstring name =
             L"Global\\nhupdate_reliances_" + std::to_wstring(::GetCurrentProcessId());
         const nhupdate::UniqueKernelHandle first(
             ::CreateMutexExW(nullptr, name.c_str(), 0, SYNCHRONIZE | MUTEX_MODIFY_STATE));
         const nhupdate::UniqueKernelHandle second(
             ::CreateMutexExW(nullptr, name.c_str(), 0, SYNCHRONIZE | MUTEX_MODIFY_STATE));
         const DWORD error = ::GetLastError();
         return second.IsValid() ? std::to_string(error) : "none";
       }},
      {"OpenMutexW, a name that nobody has any more", "2", Wine::kAsWindows,
       [](const std::wstring&) {
         const std::wstring name = SharedName();
         nhupdate::UniqueKernelHandle made(::CreateMutexW(nullptr, FALSE, name.c_str()));
         made.Reset();
         const nhupdate::UniqueKernelHandle opened(::OpenMutexW(SYNCHRONIZE, FALSE, name.c_str()));
         return ErrorOf(opened.IsValid());
       }},
      {"CreateFileMappingW and MapViewOfFile, what is in new memory", "0", Wine::kAsWindows,
       [](const std::wstring&) {
         const nhupdate::UniqueKernelHandle memory(MakeMemory());
         void* const view = ::MapViewOfFile(memory.Get(), FILE_MAP_READ, 0, 0, sizeof(int));
         const int content = view == nullptr ? -1 : *static_cast<const int*>(view);
         ::UnmapViewOfFile(view);
         return std::to_string(content);
       }},
      {"OpenFileMappingW, memory that somebody has", "0", Wine::kAsWindows,
       [](const std::wstring&) {
         const nhupdate::UniqueKernelHandle memory(MakeMemory());
         const nhupdate::UniqueKernelHandle opened(
             ::OpenFileMappingW(FILE_MAP_READ | FILE_MAP_WRITE, FALSE, SharedName().c_str()));
         return ErrorOf(opened.IsValid());
       }},
      {"OpenFileMappingW, memory of which somebody has only a view", "2", Wine::kAsWindows,
       [](const std::wstring&) {
         nhupdate::UniqueKernelHandle memory(MakeMemory());
         void* const view = ::MapViewOfFile(memory.Get(), FILE_MAP_READ, 0, 0, sizeof(int));
         memory.Reset();
         const nhupdate::UniqueKernelHandle opened(
             ::OpenFileMappingW(FILE_MAP_READ, FALSE, SharedName().c_str()));
         const std::string error = ErrorOf(opened.IsValid());
         ::UnmapViewOfFile(view);
         return error;
       }},
  };
}

}  // namespace nhupdate_test
