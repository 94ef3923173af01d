#include "tests/support/child_process.h"
#include "tests/support/windows_basics.h"

extern "C" std::uintptr_t __stack_chk_guard;

namespace nhupdate_test {
namespace {

constexpr DWORD kOverrunStatus = 0xC0000409;  // STATUS_STACK_BUFFER_OVERRUN

DWORD RunGuarded(const std::wstring& task) {
  return RunProbe(L"stack_guard_probe", task);
}

TEST(StackGuardTest, EndsAProcessThatOverrunsABufferOnItsStack) {
  EXPECT_EQ(RunGuarded(L"overrun"), kOverrunStatus);
}

TEST(StackGuardTest, DiffersInEachProcess) {
  const DWORD first = RunGuarded(L"value");
  const DWORD second = RunGuarded(L"value");

  EXPECT_NE(first, second);
  EXPECT_NE(first, static_cast<DWORD>(__stack_chk_guard >> 8));
}

TEST(StackGuardTest, HoldsTheEndOfATextNextToTheBuffer) {
  EXPECT_EQ(__stack_chk_guard & 0xFF, 0u);
  EXPECT_NE(__stack_chk_guard >> 8, 0u);
}

}  // namespace
}  // namespace nhupdate_test
