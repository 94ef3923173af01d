#pragma once

// The program's log, written to files by the library as it is shipped.

#include <string>

#include "log/log.h"
#include "log/log_center.h"

namespace nhupdate_bench {

class StartedLog {
 public:
  // The files go into a folder that must exist. The library lies beside the benchmark.
  explicit StartedLog(const std::wstring& folder);

  [[nodiscard]] nhupdate::CLog Log() { return nhupdate::CLog(center_); }

 private:
  nhupdate::CNSWLogCenter center_;
};

}  // namespace nhupdate_bench
