#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/installed_product.h"

namespace nhupdate_test {
namespace {

TEST(InstalledProductTest, RunsTheWholeProgramInTheScratchFolder) {
  InstalledProduct product({.elevated = false});

  EXPECT_EQ(product.RunProgram(L"-install"), 10);

  EXPECT_THAT(product.Transcript(), testing::Contains(L"2|Return 10"));
}

TEST(InstalledProductTest, RunsTheProgramWithoutArguments) {
  InstalledProduct product;

  EXPECT_EQ(product.RunProgram(L""), 0);

  EXPECT_THAT(product.LogCalls(), testing::IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
