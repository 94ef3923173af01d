#pragma once

// What lies in the log folder under the names of rotated files.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nhupdate {

// Numbers have at most nine digits; what comes after the highest is 1 again.
inline constexpr std::uint32_t kHighestRotatedNumber = 999'999'999;

struct RotatedFile {
  std::wstring name;
  std::uint32_t number = 0;
  std::uint64_t last_written = 0;  // in the units of FILETIME
  bool is_folder = false;          // nothing of ours, but the name is taken
};

// From the one that was written last to the oldest.
[[nodiscard]] std::vector<RotatedFile> ListRotatedFiles(const std::wstring& folder);

// The number in the name of a rotated file, in whatever letters; 0 for every other name.
[[nodiscard]] std::uint32_t RotatedNumber(std::wstring_view name);

// The number that comes after the youngest file's, passing over those that are taken.
[[nodiscard]] std::uint32_t NextRotatedNumber(const std::vector<RotatedFile>& files);

}  // namespace nhupdate
