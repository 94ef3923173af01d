#include "tests/support/installed_product.h"

#include "tests/support/basics.h"

namespace nhupdate_test {
namespace {

// What else it does shows in the tests of the manager's start-up and of whole runs (app/).
TEST(InstalledProductTest, RunsTheProgramWithoutArguments) {
  InstalledProduct product;

  EXPECT_EQ(product.RunProgram(L""), 0);
  EXPECT_THAT(product.LogCalls(), IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
