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

// From the one that was written last to the oldest. Of more names than any settings allow, which
// only others can have put there, not all are looked at.
[[nodiscard]] std::vector<RotatedFile> ListRotatedFiles(const std::wstring& folder);

// Numbers to be tried one after the other. The first comes after the youngest file's, passing over
// those that are taken; what comes after the highest is 1 again. Should it turn out to be taken
// after all, by a file that was not listed or has just been made, the others are ones that nobody
// can have foreseen.
[[nodiscard]] std::vector<std::uint32_t> NextRotatedNumbers(const std::vector<RotatedFile>& files);

}  // namespace nhupdate
