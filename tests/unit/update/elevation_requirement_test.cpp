#include "update/elevation_requirement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/recorded_log.h"

namespace nhupdate_test {
namespace {

TEST(RequireElevationTest, LogsOnlyWhenThereIsNone) {
  RecordedLog log;

  EXPECT_TRUE(nhupdate::RequireElevation(true, log.Log()));
  EXPECT_THAT(log.Records(), testing::IsEmpty());
  EXPECT_FALSE(nhupdate::RequireElevation(false, log.Log()));
  EXPECT_THAT(log.Records(), testing::ElementsAre(L"4|Process not been elevated for install."));
}

}  // namespace
}  // namespace nhupdate_test
