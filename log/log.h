#pragma once

// What everything else writes its records to.

#include <string>

#include "base/format.h"
#include "log/log_level.h"

namespace nhupdate {

class CNSWLogCenter;

// Puts the program's tag on records and passes them to a log centre, which must outlive it. Small:
// it is made where it is needed and handed down by reference.
class CLog {
 public:
  explicit CLog(CNSWLogCenter& log_center) : log_center_(log_center) {}

  // Writes one record, whatever its length.
  template <typename... Arguments>
  void Write(LogLevel level, FormatString<Arguments...> format,
             const Arguments&... arguments) const {
    WriteText(level, Format(format, arguments...));
  }

  // Writes a record that was put together already.
  void WriteText(LogLevel level, const std::wstring& message) const;

 private:
  CNSWLogCenter& log_center_;
};

}  // namespace nhupdate
