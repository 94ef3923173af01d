#include "tests/end_to_end/support/process_token.h"

#include <gtest/gtest.h>

namespace nhupdate_test {
namespace {

using nhupdate::UniqueKernelHandle;

TEST(ProcessTokenTest, IsMadeOfEitherKindFromTheOther) {
  const UniqueKernelHandle own = OpenOwnToken();
  const bool is_elevated = IsElevated(own.Get());

  const UniqueKernelHandle other = MakeToken(own.Get(), !is_elevated);
  EXPECT_EQ(IsElevated(other.Get()), !is_elevated);

  // As from a process whose own token is the other one.
  const UniqueKernelHandle again = MakeToken(other.Get(), is_elevated);
  EXPECT_EQ(IsElevated(again.Get()), is_elevated);
}

TEST(ProcessTokenTest, IsMadeOfItsOwnKindToo) {
  const UniqueKernelHandle own = OpenOwnToken();
  const UniqueKernelHandle unelevated = MakeToken(own.Get(), false);

  EXPECT_FALSE(IsElevated(MakeToken(unelevated.Get(), false).Get()));
}

}  // namespace
}  // namespace nhupdate_test
