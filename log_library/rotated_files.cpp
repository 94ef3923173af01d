#include "log_library/rotated_files.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <utility>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "log_library/file_names.h"
#include "log_library/file_time.h"

namespace nhupdate {

namespace {

std::uint32_t NumberAfter(std::uint32_t number) {
  return number < kHighestRotatedNumber ? number + 1 : 1;
}

RotatedFile FromEntry(const WIN32_FIND_DATAW& entry) {
  return {entry.cFileName, RotatedNumber(entry.cFileName), FileTimeUnits(entry.ftLastWriteTime),
          (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0};
}

bool IsYounger(const RotatedFile& left, const RotatedFile& right) {
  return left.last_written != right.last_written ? left.last_written > right.last_written
                                                 : left.number > right.number;
}

}  // namespace

std::vector<RotatedFile> ListRotatedFiles(const std::wstring& folder) {
  std::vector<RotatedFile> files;
  WIN32_FIND_DATAW entry = {};
  const UniqueFindHandle search(
      ::FindFirstFileW((folder + L"\\" + kRotatedNamePattern).c_str(), &entry));
  if (!search.IsValid()) {
    return files;
  }
  do {
    RotatedFile file = FromEntry(entry);
    if (file.number != 0) {
      files.push_back(std::move(file));
    }
  } while (::FindNextFileW(search.Get(), &entry));
  std::sort(files.begin(), files.end(), IsYounger);
  return files;
}

std::uint32_t NextRotatedNumber(const std::vector<RotatedFile>& files) {
  // Others may have put any number of files there.
  std::set<std::uint32_t> taken;
  for (const RotatedFile& file : files) {
    taken.insert(file.number);
  }
  const auto youngest =
      std::find_if(files.begin(), files.end(), [](const auto& file) { return !file.is_folder; });
  std::uint32_t number = NumberAfter(youngest == files.end() ? 0 : youngest->number);
  // Among one number more than there are files one is free.
  for (std::size_t tries = files.size(); tries > 0 && taken.contains(number); --tries) {
    number = NumberAfter(number);
  }
  return number;
}

}  // namespace nhupdate
