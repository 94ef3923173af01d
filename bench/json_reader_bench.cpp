// Reading and releasing JSON: beside widely used readers, and long texts beside short ones.

#include <malloc.h>
#include <rapidjson/document.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <tuple>

#include "bench/json_texts.h"
#include "bench/support/pairs.h"
#include "text/json_reader.h"

namespace nhupdate_bench {

namespace {

constexpr int kKi = 1024;
constexpr int kMi = 1024 * kKi;

std::string Length(int units) {
  return units < kMi ? std::to_string(units / kKi) + " Ki" : std::to_string(units / kMi) + " Mi";
}

// Short texts are read that often in each run that it takes as long as with a long one.
template <typename Read>
Work Often(int times, Read read) {
  return {[times, read] {
    for (int time = 0; time < times; ++time) {
      read();
    }
  }};
}

Work OwnReader(const std::wstring& text, int times) {
  return Often(times, [&text] {
    nhupdate::JsonValue value;
    std::ignore = nhupdate::ParseValue(value, text.c_str(), static_cast<int>(text.size()));
    nhupdate::FreeValue(value);
  });
}

// Reads UTF-8. Keeps the members of an object in order as well.
Work NlohmannsReader(const std::string& text, int times) {
  return Often(times, [&text] {
    constexpr bool kThrows = false;
    const auto value = nlohmann::json::parse(text, nullptr, kThrows);
  });
}

// Reads UTF-16, in units of two bytes. Leaves the members of an object as they come, and has
// everything in a pool that is released at once.
Work RapidReader(const std::u16string& text, int times) {
  return Often(times, [&text] {
    rapidjson::GenericDocument<rapidjson::UTF16<char16_t>> document;
    // However deep the text is nested.
    document.Parse<rapidjson::kParseIterativeFlag>(text.c_str());
  });
}

void CompareReaders(const CPairs& pairs, const JsonText& json) {
  constexpr int kUnits = kMi;
  constexpr int kTimes = 2;
  const std::string name = std::string("json_") + json.name;
  const std::string what = std::string("JSON: ") + json.what + ", " + Length(kUnits) + " units";
  const std::wstring text = json.make(kUnits);
  const std::string narrow_text(text.begin(), text.end());
  const std::u16string rapid_text(text.begin(), text.end());
  const Work own = OwnReader(text, kTimes);
  pairs.Compare({name, what, "nlohmann's reader of UTF-8", 1.0}, own,
                NlohmannsReader(narrow_text, kTimes));
  if (json.is_read_by_rapid) {
    pairs.Compare({name + "_rapid", what, "RapidJSON's reader of UTF-16"}, own,
                  RapidReader(rapid_text, kTimes));
  }
}

// From here on the heap keeps what it has got. Otherwise only the long text would be measured with
// the system's giving and taking of memory, which the short one does without.
void KeepMemory() {
  ::mallopt(M_TRIM_THRESHOLD, -1);
  ::mallopt(M_MMAP_MAX, 0);
}

// A unit of the longest text costs what a unit of a short one does, but for the caches of the
// machine, which do nothing for a long text: what those take shows beside another reader of it.
void CompareLengths(const CPairs& pairs, const JsonText& json) {
  constexpr int kLong = 64 * kMi;
  constexpr int kShort = 64 * kKi;
  const std::string name = std::string("json_") + json.name + "_long";
  if (!pairs.IsWanted(name)) {
    return;
  }
  const std::wstring long_text = json.make(kLong);
  const std::wstring short_text = json.make(kShort);
  const std::string what = std::string("JSON: ") + json.what + ", " + Length(kLong) + " units";
  const Work own = OwnReader(long_text, 1);
  pairs.Compare({name, what, "the same reader, " + Length(kShort) + " units again and again", 1.1},
                own, OwnReader(short_text, kLong / kShort));
  const std::string narrow_text(long_text.begin(), long_text.end());
  pairs.Compare({name + "_nlohmann", what, "nlohmann's reader of UTF-8"}, own,
                NlohmannsReader(narrow_text, 1));
}

}  // namespace

void MeasureAll(const CPairs& pairs) {
  for (const JsonText& json : kJsonTexts) {
    CompareReaders(pairs, json);
  }
  KeepMemory();
  for (const JsonText& json : kJsonTexts) {
    if (json.is_measured_long) {
      CompareLengths(pairs, json);
    }
  }
}

}  // namespace nhupdate_bench
