#include "update/elevation_requirement.h"

#include "tests/support/basics.h"
#include "tests/support/recorded_log.h"

namespace nhupdate_test {
namespace {

TEST(RequireElevationTest, LogsOnlyWhenThereIsNone) {
  RecordedLog log;

  EXPECT_TRUE(RequireElevation(true, log.Log()));
  EXPECT_THAT(log.Records(), IsEmpty());
  EXPECT_FALSE(RequireElevation(false, log.Log()));
  EXPECT_THAT(log.Records(), ElementsAre(L"4|Process not been elevated for install."));
}

}  // namespace
}  // namespace nhupdate_test
