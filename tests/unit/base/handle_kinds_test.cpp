// What Windows hands out, each with its own way to say "none" and to be closed.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/unique_handle.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using nhupdate::UniqueFile;
using nhupdate::UniqueFindHandle;
using nhupdate::UniqueKernelHandle;
using nhupdate::UniqueLibrary;
using nhupdate::UniqueRegistryKey;
using testing::ElementsAre;

TEST(HandleKindsTest, KnowTheirValueForNone) {
  EXPECT_FALSE(UniqueKernelHandle(nullptr).IsValid());
  EXPECT_FALSE(UniqueFile(INVALID_HANDLE_VALUE).IsValid());
  EXPECT_FALSE(UniqueFindHandle(INVALID_HANDLE_VALUE).IsValid());
  EXPECT_FALSE(UniqueRegistryKey(nullptr).IsValid());
  EXPECT_FALSE(UniqueLibrary(nullptr).IsValid());
}

// Each kind is closed by its own function. The values are no real handles: the fakes keep them.
TEST(HandleKindsTest, AreClosedByTheirOwnFunctions) {
  const auto number = [](auto value) { return reinterpret_cast<std::uintptr_t>(value); };
  const HANDLE value = reinterpret_cast<HANDLE>(std::uintptr_t{0x7000});
  std::vector<std::pair<std::string, std::uintptr_t>> calls;
  INTERPOSER(CloseHandle) close([&](HANDLE handle) -> BOOL {
    if (handle != value) {
      return close.Original()(handle);
    }
    calls.emplace_back("CloseHandle", number(handle));
    return TRUE;
  });
  INTERPOSER(FindClose) find_close([&](HANDLE handle) -> BOOL {
    calls.emplace_back("FindClose", number(handle));
    return TRUE;
  });
  INTERPOSER(RegCloseKey) close_key([&](HKEY key) -> LSTATUS {
    calls.emplace_back("RegCloseKey", number(key));
    return ERROR_SUCCESS;
  });
  INTERPOSER(FreeLibrary) free_library([&](HMODULE library) -> BOOL {
    calls.emplace_back("FreeLibrary", number(library));
    return TRUE;
  });

  UniqueKernelHandle{value}.Reset();
  UniqueFile{value}.Reset();
  UniqueFindHandle{value}.Reset();
  UniqueRegistryKey{static_cast<HKEY>(static_cast<void*>(value))}.Reset();
  UniqueLibrary{static_cast<HMODULE>(static_cast<void*>(value))}.Reset();

  EXPECT_THAT(calls,
              ElementsAre(std::pair("CloseHandle", 0x7000U), std::pair("CloseHandle", 0x7000U),
                          std::pair("FindClose", 0x7000U), std::pair("RegCloseKey", 0x7000U),
                          std::pair("FreeLibrary", 0x7000U)));
}

}  // namespace
}  // namespace nhupdate_test
