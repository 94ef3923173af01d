#pragma once

// The local time that stands before a record, with its distance from UTC.

#include <string>

#include "base/windows.h"

namespace nhupdate {

struct RecordTime {
  SYSTEMTIME local = {};
  int utc_offset_minutes = 0;  // positive to the east of Greenwich
};

[[nodiscard]] RecordTime CurrentRecordTime();

// "2026-11-20T14:03:05.123+02:00"
void AppendRecordTime(std::string& text, const RecordTime& time);

// "+02:00"
[[nodiscard]] std::string FormatUtcOffset(int utc_offset_minutes);

}  // namespace nhupdate
