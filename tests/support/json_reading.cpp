#include "tests/support/json_reading.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "tests/support/json_description.h"
#include "text/json_reader.h"

namespace nhupdate_test {

namespace {

// In a heap block of exactly the size that may be read, so that reading on is noticed.
std::vector<wchar_t> ReadableUnits(std::wstring_view text, int bound) {
  const std::wstring_view readable = WithinBound(text, bound);
  std::vector<wchar_t> units(readable.begin(), readable.end());
  if (bound > 0 && static_cast<std::size_t>(bound) > readable.size()) {
    units.push_back(L'\0');
  }
  units.shrink_to_fit();
  return units;
}

// The value before the reading, to see whether it changes; no test reads a text that says the same.
constexpr wchar_t kMark[] = L"the value as it was";

}  // namespace

std::ostream& operator<<(std::ostream& stream, const JsonReading& reading) {
  return stream << reading.result << " and " << reading.value;
}

JsonReading ReadJson(JsonReader reader, std::wstring_view text, int bound) {
  const std::vector<wchar_t> units = ReadableUnits(text, bound);
  nhupdate::JsonValue value{std::wstring(kMark)};

  JsonReading reading;
  reading.result = reader(value, units.data(), bound);
  const bool is_untouched = value.AsString() != nullptr && *value.AsString() == kMark;
  if (!is_untouched) {
    reading.value = Describe(value);
  }
  return reading;
}

JsonReading ReadJson(JsonReader reader, std::wstring_view text) {
  return ReadJson(reader, text, static_cast<int>(text.size()));
}

JsonReading ScanJsonString(std::wstring_view text, int bound) {
  const std::vector<wchar_t> units = ReadableUnits(text, bound);
  std::wstring string = kMark;

  JsonReading reading;
  reading.result = nhupdate::ScanString(units.data(), bound, string);
  if (string != kMark) {
    reading.value = DescribeString(string);
  }
  return reading;
}

std::wstring_view WithinBound(std::wstring_view text, int bound) {
  return text.substr(0, static_cast<std::size_t>(std::max(bound, 0)));
}

}  // namespace nhupdate_test
