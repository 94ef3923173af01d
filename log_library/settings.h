#pragma once

// What LogConfig.ini says: when a log file is full, and what is kept.

#include <cstdint>

#include "log_library/record_level.h"

namespace nhupdate {

struct LogSettings {
  int level = kInformationLevel;  // records of lower levels are not written
  std::uint32_t max_file_kb = 5120;
  std::uint32_t max_files = 5;  // the current file and the rotated ones together
  std::uint32_t max_age_days = 30;

  [[nodiscard]] std::uint64_t MaxFileBytes() const { return std::uint64_t{max_file_kb} * 1024; }
};

// Reads section [Log] of the file. Each value that is missing, no plain decimal number of up to
// 14 digits or outside its range is the default; so are all of them when the file can't be read.
// `path` may be null.
[[nodiscard]] LogSettings ReadLogSettings(const wchar_t* path);

}  // namespace nhupdate
