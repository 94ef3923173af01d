#pragma once

// Time that only goes forward, in microseconds. The standard library's clock of this kind would
// bring a library of threads and all that throws exceptions along.

#include <chrono>

namespace nhupdate {

struct CFineClock {
  using duration = std::chrono::microseconds;
  using rep = duration::rep;
  using period = duration::period;
  using time_point = std::chrono::time_point<CFineClock>;
  static constexpr bool is_steady = true;

  [[nodiscard]] static time_point now();
};

}  // namespace nhupdate
