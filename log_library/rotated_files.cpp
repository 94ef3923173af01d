#include "log_library/rotated_files.h"

#include <algorithm>
#include <string_view>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

namespace {

constexpr std::wstring_view kNameBegin = L"NHUpdateManager.";
constexpr std::wstring_view kNameEnd = L".log";
constexpr std::size_t kMaxDigits = 9;

std::uint32_t NumberAfter(std::uint32_t number) {
  return number < kHighestRotatedNumber ? number + 1 : 1;
}

RotatedFile FromEntry(const WIN32_FIND_DATAW& entry) {
  return {entry.cFileName, RotatedNumber(entry.cFileName),
          (std::uint64_t{entry.ftLastWriteTime.dwHighDateTime} << 32) |
              entry.ftLastWriteTime.dwLowDateTime,
          (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0};
}

// As the file system compares: a name in other letters is the same name.
bool IsSameName(std::wstring_view left, std::wstring_view right) {
  return ::CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
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
      ::FindFirstFileW((folder + L"\\NHUpdateManager.*.log").c_str(), &entry));
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

std::uint32_t RotatedNumber(std::wstring_view name) {
  const std::size_t around = kNameBegin.size() + kNameEnd.size();
  if (name.size() <= around || name.size() > around + kMaxDigits ||
      !IsSameName(name.substr(0, kNameBegin.size()), kNameBegin) ||
      !IsSameName(name.substr(name.size() - kNameEnd.size()), kNameEnd)) {
    return 0;
  }
  std::uint32_t number = 0;
  for (const wchar_t unit : name.substr(kNameBegin.size(), name.size() - around)) {
    if (unit < L'0' || unit > L'9') {
      return 0;
    }
    number = number * 10 + static_cast<std::uint32_t>(unit - L'0');
  }
  return number;
}

std::uint32_t NextRotatedNumber(const std::vector<RotatedFile>& files) {
  const auto youngest =
      std::find_if(files.begin(), files.end(), [](const auto& file) { return !file.is_folder; });
  const auto is_taken = [&](std::uint32_t number) {
    return std::any_of(files.begin(), files.end(),
                       [&](const auto& file) { return file.number == number; });
  };
  std::uint32_t number = NumberAfter(youngest == files.end() ? 0 : youngest->number);
  // Among one number more than there are files one is free.
  for (std::size_t tries = files.size(); tries > 0 && is_taken(number); --tries) {
    number = NumberAfter(number);
  }
  return number;
}

}  // namespace nhupdate
