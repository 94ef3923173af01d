#include "base/want_of_memory.h"

#include <new>

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

// STATUS_NO_MEMORY. Scripts and people know the number.
const testing::ExitedWithCode kEndedForWantOfMemory(static_cast<int>(0xC0000017));

TEST(WantOfMemoryDeathTest, EndsTheProcessWithItsCode) {
  EXPECT_EXIT(EndProcessForWantOfMemory(), kEndedForWantOfMemory, "");
}

TEST(WantOfMemoryDeathTest, IsThatOfAnyAllocation) {
  const volatile std::size_t more_than_there_is = PTRDIFF_MAX;

  EXPECT_EXIT(
      {
        EndProcessWhenMemoryRunsOut();
        ::operator delete(::operator new(more_than_there_is));
      },
      kEndedForWantOfMemory, "");
}

void EndThoughKeptFromIt() {
  const INTERPOSER(TerminateProcess) end(Answers(FALSE, ERROR_ACCESS_DENIED));
  EndProcessForWantOfMemory();
}

// The code is then that of one C runtime or the other.
bool IsAborted(int exit_code) {
  return exit_code == 3 || exit_code == static_cast<int>(0xC0000409);
}

TEST(WantOfMemoryDeathTest, EndsAProcessThatIsKeptFromEndingItself) {
  EXPECT_EXIT(EndThoughKeptFromIt(), IsAborted, "");
}

}  // namespace
}  // namespace nhupdate_test
