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

  // The other token stands for that of a process that starts programs itself.
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
