#include "child_process.h"

// These need <windows.h> first.
#include <objbase.h>
#include <shellapi.h>

namespace nimba_hub {

namespace {

// The shell may need it for a verb.
class CComApartment {
 public:
  CComApartment()
      : result_(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
  ~CComApartment() {
    if (SUCCEEDED(result_)) {
      ::CoUninitialize();
    }
  }
  CComApartment(const CComApartment&) = delete;
  CComApartment& operator=(const CComApartment&) = delete;

 private:
  HRESULT result_;
};

}  // namespace

OwnedHandle StartProgram(const std::filesystem::path& program, const std::wstring& arguments) {
  std::wstring command_line = L"\"" + program.wstring() + L"\" " + arguments;
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION information = {};
  if (!::CreateProcessW(program.c_str(), command_line.data(), nullptr, nullptr, FALSE,
                        CREATE_NO_WINDOW, nullptr, program.parent_path().c_str(), &startup,
                        &information)) {
    return nullptr;
  }
  ::CloseHandle(information.hThread);
  return OwnedHandle(information.hProcess);
}

ElevatedStart StartElevated(const std::filesystem::path& program, const std::wstring& arguments,
                            HWND window) {
  const CComApartment apartment;
  const std::filesystem::path folder = program.parent_path();
  SHELLEXECUTEINFOW execution = {};
  execution.cbSize = sizeof(execution);
  // Without the last two the shell might show a box of its own, or work on in another thread.
  execution.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
  execution.hwnd = window;
  execution.lpVerb = L"runas";
  execution.lpFile = program.c_str();
  execution.lpParameters = arguments.c_str();
  execution.lpDirectory = folder.c_str();
  execution.nShow = SW_HIDE;
  if (!::ShellExecuteExW(&execution)) {
    const DWORD error = ::GetLastError();
    return {nullptr, error};
  }
  return {OwnedHandle(execution.hProcess), ERROR_SUCCESS};
}

DWORD ExitCodeOf(HANDLE process) {
  DWORD code = STILL_ACTIVE;
  ::GetExitCodeProcess(process, &code);
  return code;
}

}  // namespace nimba_hub
