// A program that updates itself loads and frees the library again and again.

#include "tests/log_library/test_log.h"
#include "tests/support/long_tests.h"
#include "tests/support/open_handles.h"

namespace nhupdate_test {
namespace {

void RunOnce(const LogPlace& place) {
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);
  library.Write(L"record");
  library.Stop();
}

// What is lost in one run of a thousand shows in tools/test --long.
TEST(LogCyclesTest, ManyRunsLeakNoHandle) {
  const int runs = IsLongTestWanted() ? 10'000 : 1000;
  const int runs_between_counts = runs / 10;
  const LogPlace place("MaxFileSizeKB=64\nMaxFiles=2\n");
  RunOnce(place);
  const int before = CountOpenHandles();

  for (int run = 1; run <= runs; ++run) {
    RunOnce(place);
    ASSERT_FALSE(HasFatalFailure()) << "in run " << run;
    if (run % runs_between_counts == 0) {
      ASSERT_EQ(CountOpenHandles(), before) << "after " << run << " runs";
    }
  }
}

}  // namespace
}  // namespace nhupdate_test
