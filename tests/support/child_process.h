#pragma once

#include <gtest/gtest.h>

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

struct ChildProcess {
  nhupdate::UniqueKernelHandle handle;
  DWORD id = 0;
};

// Starts what the command line says; a test failure and no process when that can't be done.
[[nodiscard]] inline ChildProcess StartChild(std::wstring command_line) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION information = {};
  if (!::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &information)) {
    const DWORD error = ::GetLastError();
    ADD_FAILURE() << testing::PrintToString(command_line) << " does not start: " << error;
    return {};
  }
  ::CloseHandle(information.hThread);
  return {nhupdate::UniqueKernelHandle(information.hProcess), information.dwProcessId};
}

}  // namespace nhupdate_test
