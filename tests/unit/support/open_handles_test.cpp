#include "tests/support/open_handles.h"

#include <gtest/gtest.h>

#include "base/unique_handle.h"

namespace nhupdate_test {
namespace {

TEST(OpenHandlesTest, AreCountedOneByOneWhileTheyAreOpen) {
  const int before = CountOpenHandles();
  nhupdate::UniqueKernelHandle first(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
  nhupdate::UniqueKernelHandle second(::CreateEventW(nullptr, TRUE, FALSE, nullptr));

  const int with_both = CountOpenHandles();
  first.Reset();
  const int with_one = CountOpenHandles();

  EXPECT_EQ(with_both, before + 2);
  EXPECT_EQ(with_one, before + 1);
}

}  // namespace
}  // namespace nhupdate_test
