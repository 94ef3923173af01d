#pragma once

// The texts that the JSON reader is measured with. Each is about as long as asked for, ASCII only
// and, where it is well-formed at all, so for every reader of JSON.

#include <string>

namespace nhupdate_bench {

struct JsonText {
  const char* name;
  const char* what;
  std::wstring (*make)(int units);
  // RapidJSON gives up at an integer of some hundred digits.
  bool is_read_by_rapid = true;
  bool is_measured_long = false;  // also with a text that takes a gigabyte or two when it is read
};

inline constexpr int kJsonTextCount = 11;
extern const JsonText kJsonTexts[kJsonTextCount];

}  // namespace nhupdate_bench
