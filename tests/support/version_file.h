#pragma once

// The content of the file that says which version of the product is in a folder.

#include <string>

namespace nhupdate_test {

[[nodiscard]] inline std::string VersionFile(const std::string& version) {
  return "[ProductVersion]\r\nVersion=" + version + "\r\n";
}

}  // namespace nhupdate_test
