#include "tests/support/json_reading.h"

#include <algorithm>
#include <cstddef>

#include "tests/support/json_description.h"
#include "text/json_reader.h"

namespace nhupdate_test {

namespace {

// The value before the reading, to see whether it changes; no test reads a text that says the same.
constexpr wchar_t kMark[] = L"\a\b\a";

}  // namespace

std::ostream& operator<<(std::ostream& stream, const JsonReading& reading) {
  return stream << reading.result << " and " << reading.value;
}

CReadableText::CReadableText(std::wstring_view text, int bound) : bound_(bound) {
  const std::wstring_view readable = WithinBound(text, bound);
  const bool is_ended = bound > 0 && static_cast<std::size_t>(bound) > readable.size();
  units_.reserve(readable.size() + (is_ended ? 1 : 0));
  units_.assign(readable.begin(), readable.end());
  if (is_ended) {
    units_.push_back(L'\0');
  }
}

JsonReading CReadableText::Read(JsonReader reader) const {
  nhupdate::JsonValue value{std::wstring(kMark)};
  JsonReading reading;
  reading.result = reader(value, units_.data(), bound_);
  const bool is_untouched = value.AsString() != nullptr && *value.AsString() == kMark;
  if (!is_untouched) {
    reading.value = Describe(value);
  }
  return reading;
}

JsonReading CReadableText::ScanString() const {
  std::wstring string = kMark;
  JsonReading reading;
  reading.result = nhupdate::ScanString(units_.data(), bound_, string);
  if (string != kMark) {
    reading.value = DescribeString(string);
  }
  return reading;
}

JsonReading ReadJson(JsonReader reader, std::wstring_view text, int bound) {
  return CReadableText(text, bound).Read(reader);
}

JsonReading ReadJson(JsonReader reader, std::wstring_view text) {
  return ReadJson(reader, text, static_cast<int>(text.size()));
}

std::wstring_view WithinBound(std::wstring_view text, int bound) {
  return text.substr(0, static_cast<std::size_t>(std::max(bound, 0)));
}

}  // namespace nhupdate_test
