#pragma once

// The texts that the tests' string file has, and with that what the boxes say. None of them is one
// of the shipped texts.

#include <string>

namespace nhupdate_test {

inline constexpr char kTitle[] = "Nimba Hub \u2013 Aktualisierung";
inline constexpr char kCommonError[] = "Das hat nicht geklappt \U0001F61E";
inline constexpr char kCloseManager[] = "Bitte NHUpdateManager schlie\u00DFen";
inline constexpr int kTextCount = 3;

// The content of the string file.
[[nodiscard]] inline std::string StringFile() {
  const auto entry = [](const std::string& key, const char* text) {
    return "\"" + key + "\": \"" + text + "\"";
  };
  return "{" + entry("KEY_UPDATE_TITLE", kTitle) + ",\n " +
         entry("KEY_FAIL_COMMON_ERROR", kCommonError) + ",\n " +
         entry("KEY_FAIL_NEED_STOP_NHUPDATEMANAGER", kCloseManager) + "}\n";
}

}  // namespace nhupdate_test
