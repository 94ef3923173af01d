#pragma once

// A process that a test has started itself, by its command line. It goes on after the object's end
// unless somebody ends it.

#include <gtest/gtest.h>

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

class StartedProcess {
 public:
  // Its standard output and error go into the inheritable file, if there is one. A test failure
  // when it doesn't start.
  explicit StartedProcess(std::wstring command_line, DWORD flags = 0, HANDLE output = nullptr) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = output != nullptr ? STARTF_USESTDHANDLES : 0;
    startup.hStdOutput = startup.hStdError = output;
    PROCESS_INFORMATION information = {};
    EXPECT_TRUE(::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, output != nullptr,
                                 flags, nullptr, nullptr, &startup, &information))
        << "Can't start " << testing::PrintToString(command_line) << ": " << ::GetLastError();
    ::CloseHandle(information.hThread);
    process_.Reset(information.hProcess);
    id_ = information.dwProcessId;
  }

  [[nodiscard]] HANDLE Handle() const { return process_.Get(); }
  [[nodiscard]] DWORD Id() const { return id_; }

  // Waits until it has ended and returns its exit code; a test failure after the time limit.
  [[nodiscard]] DWORD Wait(DWORD limit_ms = 50'000) const {
    EXPECT_EQ(::WaitForSingleObject(process_.Get(), limit_ms), DWORD{WAIT_OBJECT_0});
    DWORD exit_code = 0;
    EXPECT_TRUE(::GetExitCodeProcess(process_.Get(), &exit_code));
    return exit_code;
  }

 private:
  nhupdate::UniqueKernelHandle process_;
  DWORD id_ = 0;
};

}  // namespace nhupdate_test
