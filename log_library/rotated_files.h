#pragma once

// What lies in the log folder under the names of rotated files.

#include <cstdint>
#include <string>
#include <vector>

namespace nhupdate {

struct RotatedFile {
  std::wstring name;
  std::uint32_t number = 0;
  std::uint64_t last_written = 0;  // in the units of FILETIME
  bool is_folder = false;          // nothing of ours, but the name is taken
};

// From the one that was written last to the oldest.
[[nodiscard]] std::vector<RotatedFile> ListRotatedFiles(const std::wstring& folder);

// The number that comes after the youngest file's, passing over those that are taken; what comes
// after the highest is 1 again.
[[nodiscard]] std::uint32_t NextRotatedNumber(const std::vector<RotatedFile>& files);

}  // namespace nhupdate
