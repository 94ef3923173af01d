// The library has a memory allocator of its own, so it must see to its own want of memory.

#include "base/want_of_memory.h"

#include <cstdlib>

#include "tests/log_library/test_log.h"
#include "tests/support/import_table.h"

namespace nhupdate_test {
namespace {

// How often the library has allocated memory, and after how many times it gets none any more.
int allocations = 0;
int limit = 0;

void* AllocateUpToTheLimit(std::size_t size) {
  return ++allocations <= limit ? std::malloc(size) : nullptr;
}

// Everything that a log does in its life.
void UseLog(int allocation_limit) {
  TestLog log(kSmallFiles);
  void** const slot = FindImportSlot("malloc", log.Module());
  limit = allocation_limit;
  WriteImportSlot(slot, reinterpret_cast<void*>(&AllocateUpToTheLimit));
  EXPECT_EQ(log.Start(), 0);
  log.Write(kFullFile);
  log.Write(L"behind a rotation");
  log.Stop();
  WriteImportSlot(slot, reinterpret_cast<void*>(&std::malloc));
}

TEST(LogLibraryDeathTest, EndsTheProcessWhenThereIsNoMemory) {
  UseLog(1'000'000);
  const int needed = allocations;
  ASSERT_GT(needed, 60);

  // The last allocations are spared: a run may need a few less than the first one did.
  constexpr int kParts = 8;
  for (int part = 0; part < kParts; ++part) {
    EXPECT_EXIT(UseLog(needed * part / kParts),
                testing::ExitedWithCode(static_cast<int>(kWantOfMemoryExitCode)), "")
        << part;
  }
}

}  // namespace
}  // namespace nhupdate_test
