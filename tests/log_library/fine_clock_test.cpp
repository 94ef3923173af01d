#include "log_library/fine_clock.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(FineClockTest, CountsMicrosecondsOfWhateverTheCounterCounts) {
  constexpr struct {
    LONGLONG counter;
    LONGLONG frequency;
    LONGLONG microseconds;
  } kCases[] = {
      {10'000'005, 10'000'000, 1'000'000},
      {29, 10'000'000, 2},
      {9'999'999, 10'000'000, 999'999},
      {5, 2, 2'500'000},
      // A year of a clock of three gigahertz.
      {31'536'000LL * 3'000'000'000 + 3000, 3'000'000'000, 31'536'000'000'001},
  };
  for (const auto& at : kCases) {
    const INTERPOSER(QueryPerformanceFrequency) frequency([&at](LARGE_INTEGER* value) {
      value->QuadPart = at.frequency;
      return TRUE;
    });
    const INTERPOSER(QueryPerformanceCounter) counter([&at](LARGE_INTEGER* value) {
      value->QuadPart = at.counter;
      return TRUE;
    });
    EXPECT_EQ(CFineClock::now().time_since_epoch().count(), at.microseconds)
        << at.counter << " of " << at.frequency;
  }
}

}  // namespace
}  // namespace nhupdate_test
