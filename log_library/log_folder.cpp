#include "log_library/log_folder.h"

#include <tuple>
#include <utility>

#include "base/entry_deletion.h"
#include "base/paths.h"
#include "base/windows.h"
#include "log_library/file_names.h"
#include "log_library/file_time.h"
#include "log_library/opened_file.h"
#include "log_library/rotated_files.h"

namespace nhupdate {

namespace {

constexpr std::uint64_t kFileTimeUnitsPerDay = 24ULL * 60 * 60 * 10'000'000;  // of 100 ns

// The log folder is ProgramData\Corvane\NimbaSoftware\NimbaHub\Log. Users may make or exchange each
// of these but ProgramData itself.
constexpr int kLevelsBelowProgramData = 4;

// At a time. That takes some hundredths of a second.
constexpr int kMaxDeletions = 64;

// Relative names would mean another folder as soon as the program changes its current one.
std::wstring FullPath(const std::wstring& path) {
  const DWORD needed = ::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring full(needed, L'\0');
  const DWORD units = ::GetFullPathNameW(path.c_str(), needed, full.data(), nullptr);
  full.resize(units < needed ? units : 0);
  while (full.ends_with(L'\\')) {
    full.pop_back();
  }
  return full;
}

// Opens the file so that nobody can write into it meanwhile.
UniqueFile KeepWritersOut(const std::wstring& path) {
  return OpenUnfollowed(path, FILE_READ_DATA, OPEN_EXISTING, FILE_SHARE_READ | FILE_SHARE_DELETE);
}

std::uint64_t CurrentTime() {
  FILETIME now = {};
  ::GetSystemTimeAsFileTime(&now);
  return FileTimeUnits(now);
}

}  // namespace

StartResult CLogFolder::Open(const std::wstring& path) {
  path_ = FullPath(path);
  // Without a backslash the name of a drive means the drive itself; with one, the name of a link
  // could mean what it leads to.
  const std::wstring own_name = path_.ends_with(L':') ? path_ + L"\\" : path_;
  held_.emplace(own_name);
  const UniqueFile folder = OpenUnfollowed(own_name, 0, OPEN_EXISTING, kShareAll);
  OpenedFile opened;
  if (!folder.IsValid() || !Inspect(folder, opened) || !opened.IsFolder()) {
    return StartResult::kFolderNotUsable;
  }
  place_ = CPlace(folder);
  if (!place_.IsKnown()) {
    return StartResult::kFolderNotUsable;
  }
  return opened.IsLink() || !IsReachedWithoutUsersLinks() ? StartResult::kFolderIsLink
                                                          : StartResult::kStarted;
}

std::wstring CLogFolder::PathOf(const std::wstring& name) const {
  return path_ + L"\\" + name;
}

std::vector<std::wstring> CLogFolder::NextRotatedNames() const {
  std::vector<std::wstring> names;
  for (const std::uint32_t number : NextRotatedNumbers(ListRotatedFiles(path_))) {
    names.push_back(RotatedName(number));
  }
  return names;
}

void CLogFolder::DeleteOutdated(std::uint32_t max_count, std::uint32_t max_age_days) const {
  const std::uint64_t now = CurrentTime();
  const std::uint64_t max_age = max_age_days * kFileTimeUnitsPerDay;
  std::uint32_t kept = 0;
  std::vector<std::wstring> outdated;
  for (const RotatedFile& file : ListRotatedFiles(path_)) {
    if (file.is_folder) {
      continue;
    }
    const bool is_too_old = now > file.last_written && now - file.last_written > max_age;
    if (kept < max_count && !is_too_old) {
      ++kept;
    } else {
      outdated.push_back(file.name);
    }
  }
  // The oldest first, so that what stays for the next time is the youngest of them.
  for (int deleted = 0; deleted < kMaxDeletions && !outdated.empty(); ++deleted) {
    const std::wstring name = std::move(outdated.back());
    outdated.pop_back();
    const UniqueFile unwritten = KeepWritersOut(PathOf(name));
    const DWORD error = ::GetLastError();
    if (unwritten.IsValid() || error != ERROR_SHARING_VIOLATION) {
      // What stays is tried again with the next rotation.
      std::ignore = DeleteEntry(PathOf(name), EntryKind::kFile, PlaceOf(name));
    }
  }
}

bool CLogFolder::IsReachedWithoutUsersLinks() const {
  const bool has_drive_letter = !path_.starts_with(L'\\');
  if (!has_drive_letter) {
    return true;
  }
  std::wstring anchor = path_;
  for (int level = 0; level < kLevelsBelowProgramData && !anchor.ends_with(L':'); ++level) {
    anchor = ParentFolder(anchor);
  }
  return place_.IsSameAs(PlaceSeenFrom(anchor, path_));
}

bool CLogFolder::IsNamed(const UniqueFile& file, const std::wstring& name) const {
  return CPlace(file).IsSameAs(PlaceOf(name));
}

CPlace CLogFolder::PlaceOf(const std::wstring& name) const {
  return place_.Below(L"\\" + name);
}

}  // namespace nhupdate
