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

void AppendDigits(std::string& text, int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  text.append(digits.size() < width ? width - digits.size() : 0, '0');
  text += digits;
}

void AppendUtcOffset(std::string& text, int utc_offset_minutes) {
  const int minutes = std::abs(utc_offset_minutes);
  text += utc_offset_minutes < 0 ? '-' : '+';
  AppendDigits(text, minutes / 60, 2);
  text += ':';
  AppendDigits(text, minutes % 60, 2);
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

void AppendRecordTime(std::string& text, const RecordTime& time) {
  const SYSTEMTIME& local = time.local;
  const struct {
    int number;
    std::size_t width;
    char end;
  } parts[] = {
      {local.wYear, 4, '-'}, {local.wMonth, 2, '-'},  {local.wDay, 2, 'T'},
      {local.wHour, 2, ':'}, {local.wMinute, 2, ':'}, {local.wSecond, 2, '.'},
  };
  for (const auto& part : parts) {
    AppendDigits(text, part.number, part.width);
    text += part.end;
  }
  AppendDigits(text, local.wMilliseconds, 3);
  AppendUtcOffset(text, time.utc_offset_minutes);
}

std::string FormatUtcOffset(int utc_offset_minutes) {
  std::string text;
  AppendUtcOffset(text, utc_offset_minutes);
  return text;
}

}  // namespace nhupdate
