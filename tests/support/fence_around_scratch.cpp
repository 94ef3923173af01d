#include "tests/support/fence.h"

nhupdate_test::FenceReach nhupdate_test::ReachOfThisExecutable() {
  return FenceReach::kScratch;
}
