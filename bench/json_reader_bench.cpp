// Reading and releasing JSON, beside widely used readers.

#include <nlohmann/json.hpp>
#include <string>
#include <tuple>

#include "bench/json_texts.h"
#include "bench/support/pairs.h"
#include "text/json_reader.h"

namespace nhupdate_bench {

namespace {

// Reads and releases texts of altogether this many units in each run, so that short texts can be
// measured as well.
constexpr int kUnits = 1 << 22;

void CompareReaders(const CPairs& pairs, const JsonText& json, int units) {
  const std::wstring text = json.make(units);
  const std::string bytes(text.begin(), text.end());
  const int times = kUnits / units > 0 ? kUnits / units : 1;
  const std::string length = std::to_string(units / 1024) + " Ki";
  pairs.Compare({std::string("json_") + json.name + "_" + std::to_string(units / 1024),
                 std::string("JSON: ") + json.what + ", " + length + " units",
                 "nlohmann's reader of UTF-8", 1.0},
                {[&] {
                  for (int time = 0; time < times; ++time) {
                    nhupdate::JsonValue value;
                    std::ignore =
                        nhupdate::ParseValue(value, text.c_str(), static_cast<int>(text.size()));
                    nhupdate::FreeValue(value);
                  }
                }},
                {[&] {
                  for (int time = 0; time < times; ++time) {
                    constexpr bool kThrows = false;
                    const auto value = nlohmann::json::parse(bytes, nullptr, kThrows);
                  }
                }});
}

}  // namespace

void MeasureAll(const CPairs& pairs) {
  for (const JsonText& json : kJsonTexts) {
    CompareReaders(pairs, json, 1 << 20);
  }
}

}  // namespace nhupdate_bench
