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

// Ten times as many as LogConfig.ini allows to be kept. That many are listed in some hundredths of
// a second.
constexpr int kMaxEntries = 10'000;

constexpr int kUnforeseenNumbers = 3;

std::uint32_t NumberAfter(std::uint32_t number) {
  return number < kHighestRotatedNumber ? number + 1 : 1;
}

// The counter runs too fast for anyone to plan for its value, and the factor scatters neighbours
// over the whole range.
std::uint32_t UnforeseenNumber() {
  constexpr std::uint64_t kScatteringFactor = 0x9E37'79B9'7F4A'7C15;
  LARGE_INTEGER counter = {};
  ::QueryPerformanceCounter(&counter);
  const std::uint64_t scattered = static_cast<std::uint64_t>(counter.QuadPart) * kScatteringFactor;
  return static_cast<std::uint32_t>((scattered >> 32) % kHighestRotatedNumber) + 1;
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
  const UniqueFindHandle search(::FindFirstFileExW((folder + L"\\" + kRotatedNamePattern).c_str(),
                                                   FindExInfoBasic, &entry, FindExSearchNameMatch,
                                                   nullptr, FIND_FIRST_EX_LARGE_FETCH));
  if (!search.IsValid()) {
    return files;
  }
  int entries = 0;
  do {
    RotatedFile file = FromEntry(entry);
    if (file.number != 0) {
      files.push_back(std::move(file));
    }
    ++entries;
  } while (entries < kMaxEntries && ::FindNextFileW(search.Get(), &entry));
  std::sort(files.begin(), files.end(), IsYounger);
  return files;
}

std::vector<std::uint32_t> NextRotatedNumbers(const std::vector<RotatedFile>& files) {
  std::set<std::uint32_t> taken;
  for (const RotatedFile& file : files) {
    taken.insert(file.number);
  }
  const auto youngest =
      std::find_if(files.begin(), files.end(), [](const auto& file) { return !file.is_folder; });
  std::uint32_t number = NumberAfter(youngest == files.end() ? 0 : youngest->number);
  // With n files at most n numbers are taken, so one of the next n + 1 is free.
  for (std::size_t tries = files.size(); tries > 0 && taken.contains(number); --tries) {
    number = NumberAfter(number);
  }
  std::vector<std::uint32_t> numbers = {number};
  for (int count = 0; count < kUnforeseenNumbers; ++count) {
    numbers.push_back(UnforeseenNumber());
  }
  return numbers;
}

}  // namespace nhupdate
