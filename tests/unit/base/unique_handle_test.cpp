#include "base/unique_handle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/interposer.h"

namespace nhupdate {
namespace {

using nhupdate_test::Interposer;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(UniqueHandleTest, HoldsNothingAtFirstAndClosesNothing) {
  {
    const Number number;
    EXPECT_FALSE(number.IsValid());
    EXPECT_EQ(number.Get(), -1);
  }

  EXPECT_THAT(Closed(), IsEmpty());
}

TEST_F(UniqueHandleTest, ClosesOnceAtItsEnd) {
  {
    const Number number(7);
    EXPECT_TRUE(number.IsValid());
    EXPECT_EQ(number.Get(), 7);
    EXPECT_THAT(Closed(), IsEmpty());
  }

  EXPECT_THAT(Closed(), ElementsAre(7));
}

TEST_F(UniqueHandleTest, TakesAValueThatOnlyLooksLikeNone) {
  {
    const Number number(0);
    EXPECT_TRUE(number.IsValid());
  }

  EXPECT_THAT(Closed(), ElementsAre(0));
}

TEST_F(UniqueHandleTest, IsNotClosedAgainAfterReset) {
  {
    Number number(7);
    number.Reset();
    EXPECT_FALSE(number.IsValid());
    number.Reset();
  }

  EXPECT_THAT(Closed(), ElementsAre(7));
}

TEST_F(UniqueHandleTest, ClosesTheOldValueWhenItGetsANewOne) {
  {
    Number number(7);
    number.Reset(8);
    EXPECT_THAT(Closed(), ElementsAre(7));
    EXPECT_EQ(number.Get(), 8);
  }

  EXPECT_THAT(Closed(), ElementsAre(7, 8));
}

TEST_F(UniqueHandleTest, GivesItsValueAwayUnclosed) {
  int value = 0;
  {
    Number number(7);
    value = number.Release();
    EXPECT_FALSE(number.IsValid());
  }

  EXPECT_EQ(value, 7);
  EXPECT_THAT(Closed(), IsEmpty());
}

TEST_F(UniqueHandleTest, ClosesWhatItHeldBeforeItReceives) {
  {
    Number number(7);
    *number.Receive() = 8;
    EXPECT_THAT(Closed(), ElementsAre(7));
    EXPECT_EQ(number.Get(), 8);
  }

  EXPECT_THAT(Closed(), ElementsAre(7, 8));
}

TEST_F(UniqueHandleTest, HoldsNothingWhenNothingWasReceived) {
  Number number(7);

  static_cast<void>(number.Receive());

  EXPECT_FALSE(number.IsValid());
}

TEST_F(UniqueHandleTest, HandsItsValueOverWhenMoved) {
  {
    Number source(7);
    Number target(std::move(source));
    EXPECT_EQ(target.Get(), 7);
    EXPECT_THAT(Closed(), IsEmpty());
  }

  EXPECT_THAT(Closed(), ElementsAre(7));
}

TEST_F(UniqueHandleTest, ClosesTheTargetsOldValueWhenMovedInto) {
  {
    Number source(7);
    Number target(8);
    target = std::move(source);
    EXPECT_THAT(Closed(), ElementsAre(8));
    EXPECT_EQ(target.Get(), 7);
  }

  EXPECT_THAT(Closed(), ElementsAre(8, 7));
}

TEST_F(UniqueHandleTest, SurvivesBeingMovedIntoItself) {
  {
    Number number(7);
    Number& same = number;
    number = std::move(same);
    EXPECT_EQ(number.Get(), 7);
    EXPECT_THAT(Closed(), IsEmpty());
  }

  EXPECT_THAT(Closed(), ElementsAre(7));
}

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
  Interposer<decltype(::CloseHandle)> close("CloseHandle", [&](HANDLE handle) -> BOOL {
    if (handle != value) {
      return close.Original()(handle);
    }
    calls.emplace_back("CloseHandle", number(handle));
    return TRUE;
  });
  Interposer<decltype(::FindClose)> find_close("FindClose", [&](HANDLE handle) -> BOOL {
    calls.emplace_back("FindClose", number(handle));
    return TRUE;
  });
  Interposer<decltype(::RegCloseKey)> close_key("RegCloseKey", [&](HKEY key) -> LSTATUS {
    calls.emplace_back("RegCloseKey", number(key));
    return ERROR_SUCCESS;
  });
  Interposer<decltype(::FreeLibrary)> free_library("FreeLibrary", [&](HMODULE library) -> BOOL {
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
}  // namespace nhupdate
