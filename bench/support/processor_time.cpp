#include "bench/support/processor_time.h"

#ifdef _WIN32
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

#include "base/windows.h"
#include "bench/support/pairs.h"
#else
#include <ctime>
#endif

namespace nhupdate_bench {

#ifdef _WIN32

namespace {

std::uint64_t Ticks(const FILETIME& time) {
  return (std::uint64_t{time.dwHighDateTime} << 32) + time.dwLowDateTime;
}

// tools/bench names the file in which Linux counts the server's time, in nanoseconds.
double ServerMs() {
  const char* path = std::getenv("NHUPDATE_SERVER_TIME");
  if (path == nullptr) {
    return 0.0;
  }
  double nanoseconds = 0.0;
  if (!(std::ifstream(path) >> nanoseconds)) {
    GiveUp("The server's time can't be read.");
  }
  return nanoseconds / 1e6;
}

}  // namespace

double ProcessorMs() {
  FILETIME created = {};
  FILETIME ended = {};
  FILETIME kernel = {};
  FILETIME user = {};
  ::GetProcessTimes(::GetCurrentProcess(), &created, &ended, &kernel, &user);
  return static_cast<double>(Ticks(kernel) + Ticks(user)) / 1e4 + ServerMs();
}

#else

double ProcessorMs() {
  timespec time = {};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

#endif

}  // namespace nhupdate_bench
