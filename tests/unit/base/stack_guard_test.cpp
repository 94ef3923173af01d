#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/files.h"

extern "C" std::uintptr_t __stack_chk_guard;

namespace nhupdate_test {
namespace {

constexpr DWORD kOverrunStatus = 0xC0000409;  // STATUS_STACK_BUFFER_OVERRUN

// Returns the exit code.
DWORD RunProbe(const std::wstring& task) {
  constexpr DWORD kLimitMs = 50 * 1000;
  std::wstring command_line = L"\"" + TestProgramFolder() + L"\\stack_guard_probe.exe\" " + task;
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION information = {};
  if (!::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &information)) {
    ADD_FAILURE() << "stack_guard_probe.exe does not start: " << ::GetLastError();
    return 0;
  }
  const nhupdate::UniqueKernelHandle thread(information.hThread);
  const nhupdate::UniqueKernelHandle process(information.hProcess);
  EXPECT_EQ(::WaitForSingleObject(process.Get(), kLimitMs), static_cast<DWORD>(WAIT_OBJECT_0));
  DWORD code = 0;
  EXPECT_TRUE(::GetExitCodeProcess(process.Get(), &code));
  return code;
}

TEST(StackGuardTest, EndsAProcessThatOverrunsABufferOnItsStack) {
  EXPECT_EQ(RunProbe(L"overrun"), kOverrunStatus);
}

TEST(StackGuardTest, DiffersInEachProcess) {
  const DWORD first = RunProbe(L"value");
  const DWORD second = RunProbe(L"value");

  EXPECT_NE(first, second);
  EXPECT_NE(first, static_cast<DWORD>(__stack_chk_guard >> 8));
}

TEST(StackGuardTest, HoldsTheEndOfATextNextToTheBuffer) {
  EXPECT_EQ(__stack_chk_guard & 0xFF, 0u);
  EXPECT_NE(__stack_chk_guard >> 8, 0u);
}

}  // namespace
}  // namespace nhupdate_test
