#pragma once

#include <gtest/gtest.h>

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/files.h"

namespace nhupdate_test {

struct ChildProcess {
  nhupdate::UniqueKernelHandle handle;
  DWORD id = 0;
  nhupdate::UniqueKernelHandle first_thread;
};

// Starts what the command line says; a test failure and no process when that can't be done. What it
// prints goes to `output` when there is one, an inheritable handle, else to this process's own.
[[nodiscard]] inline ChildProcess StartChild(std::wstring command_line, HANDLE output = nullptr) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  if (output != nullptr) {
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = output;
  }
  PROCESS_INFORMATION information = {};
  if (!::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, output != nullptr, 0,
                        nullptr, nullptr, &startup, &information)) {
    const DWORD error = ::GetLastError();
    ADD_FAILURE() << testing::PrintToString(command_line) << " does not start: " << error;
    return {};
  }
  return {nhupdate::UniqueKernelHandle(information.hProcess), information.dwProcessId,
          nhupdate::UniqueKernelHandle(information.hThread)};
}

// Waits for half a minute at most, and returns the exit code.
[[nodiscard]] inline DWORD ExitCodeOf(const ChildProcess& child) {
  constexpr DWORD kLimitMs = 30'000;
  EXPECT_EQ(::WaitForSingleObject(child.handle.Get(), kLimitMs), DWORD{WAIT_OBJECT_0});
  DWORD exit_code = 0;
  ::GetExitCodeProcess(child.handle.Get(), &exit_code);
  return exit_code;
}

// Runs one of the small programs that lie beside this one to its end, and returns its exit code.
[[nodiscard]] inline DWORD RunProbe(const std::wstring& name, const std::wstring& argument) {
  const std::wstring program = TestProgramFolder() + L"\\" + name + L".exe";
  return ExitCodeOf(StartChild(L"\"" + program + L"\" \"" + argument + L"\""));
}

struct ChildEnd {
  DWORD exit_code = 0;
  std::string output;
};

// Runs what the command line says to its end. What it prints goes into the file first, which is
// overwritten.
[[nodiscard]] inline ChildEnd RunChild(const std::wstring& command_line,
                                       const std::wstring& output_file) {
  SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
  nhupdate::UniqueFile file(::CreateFileW(output_file.c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                          &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                          nullptr));
  ChildEnd end;
  end.exit_code = ExitCodeOf(StartChild(command_line, file.Get()));
  file.Reset();
  end.output = ReadFileBytes(output_file);
  return end;
}

}  // namespace nhupdate_test
