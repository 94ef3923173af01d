// A program that updates itself loads and frees the library again and again.

#include <gtest/gtest.h>

#include "tests/log_library/test_log.h"
#include "tests/support/open_handles.h"

namespace nhupdate_test {
namespace {

void RunOnce(const LogPlace& place) {
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);
  library.Write(L"record");
  library.Stop();
}

TEST(LogCyclesTest, TenThousandRunsLeakNoHandle) {
  constexpr int kRuns = 10'000;
  constexpr int kRunsBetweenCounts = 1000;
  const LogPlace place("MaxFileSizeKB=64\nMaxFiles=2\n");
  RunOnce(place);
  const int before = CountOpenHandles();

  for (int run = 1; run <= kRuns; ++run) {
    RunOnce(place);
    ASSERT_FALSE(HasFatalFailure()) << "in run " << run;
    if (run % kRunsBetweenCounts == 0) {
      ASSERT_EQ(CountOpenHandles(), before) << "after " << run << " runs";
    }
  }
}

}  // namespace
}  // namespace nhupdate_test
