#include "base/unique_handle.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

std::vector<int>& Closed() {
  static std::vector<int> closed;
  return closed;
}

struct NumberTraits {
  using Value = int;
  static Value None() { return -1; }
  static void Close(Value number) { Closed().push_back(number); }
};
using Number = UniqueHandle<NumberTraits>;

class UniqueHandleTest : public testing::Test {
 protected:
  void SetUp() override { Closed().clear(); }
};

TEST_F(UniqueHandleTest, ClosesOnceAtItsEndWhatIsNotNone) {
  {
    const Number none;
    const Number zero(0);
    const Number seven(7);
    EXPECT_FALSE(none.IsValid());
    EXPECT_EQ(none.Get(), -1);
    EXPECT_TRUE(zero.IsValid());
    EXPECT_EQ(seven.Get(), 7);
    EXPECT_THAT(Closed(), IsEmpty());
  }

  EXPECT_THAT(Closed(), ElementsAre(7, 0));
}

TEST_F(UniqueHandleTest, ClosesWhatItHeldWhenItIsResetOrReceives) {
  {
    Number number(7);
    number.Reset(8);
    EXPECT_THAT(Closed(), ElementsAre(7));
    EXPECT_EQ(number.Get(), 8);
    *number.Receive() = 9;
    EXPECT_THAT(Closed(), ElementsAre(7, 8));
    EXPECT_EQ(number.Get(), 9);
    std::ignore = number.Receive();
    EXPECT_FALSE(number.IsValid());
    number.Reset(10);
    number.Reset();
    number.Reset();
    EXPECT_FALSE(number.IsValid());
  }

  EXPECT_THAT(Closed(), ElementsAre(7, 8, 9, 10));
}

TEST_F(UniqueHandleTest, GivesItsValueAwayUnclosed) {
  {
    Number number(7);
    EXPECT_EQ(number.Release(), 7);
    EXPECT_FALSE(number.IsValid());
  }

  EXPECT_THAT(Closed(), IsEmpty());
}

TEST_F(UniqueHandleTest, HandsItsValueOverWhenMoved) {
  {
    Number source(7);
    Number made(std::move(source));
    EXPECT_EQ(made.Get(), 7);
    Number target(8);
    EXPECT_THAT(Closed(), IsEmpty());
    target = std::move(made);
    EXPECT_THAT(Closed(), ElementsAre(8));
    EXPECT_EQ(target.Get(), 7);
    Number& same = target;
    target = std::move(same);
    EXPECT_EQ(target.Get(), 7);
    EXPECT_THAT(Closed(), ElementsAre(8));
  }

  EXPECT_THAT(Closed(), ElementsAre(8, 7));
}

TEST(HandleKindsTest, KnowTheirValueForNone) {
  EXPECT_FALSE(UniqueKernelHandle(nullptr).IsValid());
  EXPECT_FALSE(UniqueFile(INVALID_HANDLE_VALUE).IsValid());
  EXPECT_FALSE(UniqueFindHandle(INVALID_HANDLE_VALUE).IsValid());
  EXPECT_FALSE(UniqueRegistryKey(nullptr).IsValid());
  EXPECT_FALSE(UniqueLibrary(nullptr).IsValid());
}

// The values are no real handles, so the fakes don't pass them on.
TEST(HandleKindsTest, AreClosedByTheirOwnFunctions) {
  void* const value = reinterpret_cast<void*>(std::uintptr_t{0x7000});
  std::vector<std::string> calls;
  const auto record = [&](const char* function, const void* handle) {
    EXPECT_EQ(handle, value);
    calls.emplace_back(function);
    return TRUE;
  };
  INTERPOSER(CloseHandle) close([&](HANDLE handle) -> BOOL {
    return handle == value ? record("CloseHandle", handle) : close.Original()(handle);
  });
  INTERPOSER(FindClose) find_close([&](HANDLE handle) { return record("FindClose", handle); });
  INTERPOSER(RegCloseKey) close_key(
      [&](HKEY key) -> LSTATUS { return record("RegCloseKey", key); });
  INTERPOSER(FreeLibrary) free_library(
      [&](HMODULE library) { return record("FreeLibrary", library); });

  UniqueKernelHandle{value}.Reset();
  UniqueFile{value}.Reset();
  UniqueFindHandle{value}.Reset();
  UniqueRegistryKey{static_cast<HKEY>(value)}.Reset();
  UniqueLibrary{static_cast<HMODULE>(value)}.Reset();

  EXPECT_THAT(calls,
              ElementsAre("CloseHandle", "CloseHandle", "FindClose", "RegCloseKey", "FreeLibrary"));
}

}  // namespace
}  // namespace nhupdate_test
