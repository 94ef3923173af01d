#include "log_library/record_time.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "log_library/file_time.h"

namespace nhupdate {

namespace {

constexpr std::int64_t kFileTimeUnitsPerMinute = 60LL * 10'000'000;  // of 100 ns

std::int64_t Units(const FILETIME& time) {
  return static_cast<std::int64_t>(FileTimeUnits(time));
}

std::string Digits(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

}  // namespace

RecordTime CurrentRecordTime() {
  FILETIME utc = {};
  ::GetSystemTimeAsFileTime(&utc);
  FILETIME local = utc;
  ::FileTimeToLocalFileTime(&utc, &local);  // fails only beyond the year 30827
  RecordTime time;
  ::FileTimeToSystemTime(&local, &time.local);  // likewise
  time.utc_offset_minutes = static_cast<int>((Units(local) - Units(utc)) / kFileTimeUnitsPerMinute);
  return time;
}

std::string FormatRecordTime(const RecordTime& time) {
  const SYSTEMTIME& local = time.local;
  return Digits(local.wYear, 4) + "-" + Digits(local.wMonth, 2) + "-" + Digits(local.wDay, 2) +
         "T" + Digits(local.wHour, 2) + ":" + Digits(local.wMinute, 2) + ":" +
         Digits(local.wSecond, 2) + "." + Digits(local.wMilliseconds, 3) +
         FormatUtcOffset(time.utc_offset_minutes);
}

std::string FormatUtcOffset(int utc_offset_minutes) {
  const int minutes = std::abs(utc_offset_minutes);
  return (utc_offset_minutes < 0 ? "-" : "+") + Digits(minutes / 60, 2) + ":" +
         Digits(minutes % 60, 2);
}

}  // namespace nhupdate
