#include "base/unique_handle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace nhupdate_test {
namespace {

using nhupdate::UniqueHandle;
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

}  // namespace
}  // namespace nhupdate_test
