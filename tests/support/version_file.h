#pragma once

// The file that tells which version lies in a folder.

#include <string>

namespace nhupdate_test {

// Its content.
[[nodiscard]] inline std::string VersionFile(const std::string& version) {
  return "[ProductVersion]\r\nVersion=" + version + "\r\n";
}

}  // namespace nhupdate_test
