#include "tests/support/child_process.h"
#include "tests/support/windows_basics.h"

extern "C" std::uintptr_t __stack_chk_guard;

namespace nhupdate_test {
namespace {

constexpr DWORD kOverrunStatus = 0xC0000409;  // STATUS_STACK_BUFFER_OVERRUN

DWORD RunProbe(const std::wstring& task) {
  return ExitCodeOf(StartChild(L"\"" + TestProgramFolder() + L"\\stack_guard_probe.exe\" " + task));
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
