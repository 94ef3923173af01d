#include "log_library/fine_clock.h"

#include "base/windows.h"

namespace nhupdate {

CFineClock::time_point CFineClock::now() {
  // Neither call fails on a system that this runs on.
  LARGE_INTEGER frequency = {};
  ::QueryPerformanceFrequency(&frequency);
  LARGE_INTEGER counter = {};
  ::QueryPerformanceCounter(&counter);
  // Seconds apart, or the product would overflow after ten days.
  const std::chrono::seconds seconds(counter.QuadPart / frequency.QuadPart);
  const std::chrono::microseconds rest(counter.QuadPart % frequency.QuadPart * 1'000'000 /
                                       frequency.QuadPart);
  return time_point(seconds + rest);
}

}  // namespace nhupdate
