#include "install/folder_copy.h"

#include <optional>
#include <tuple>
#include <utility>

#include "base/entry_deletion.h"
#include "base/folder_listing.h"
#include "base/folder_making.h"
#include "base/paths.h"
#include "base/windows_path.h"

namespace nhupdate {

namespace {

constexpr int kCopyAttempts = 10;

// Makes sure that there is no link in the folder's place, and holds the folder. Where nothing can
// lead to it any more but its own path, its place isn't looked at. Returns the error; nothing when
// the folder is held, or can't be made, which shows as soon as something is copied into it.
std::optional<DWORD> MakePlainFolder(const std::wstring& folder, const CPlace& place,
                                     bool way_is_kept, std::optional<CHeldFolder>& held) {
  const auto leads_elsewhere = [&] {
    return way_is_kept ? held->IsLink() : held->LeadsElsewhere(place);
  };
  const bool was_there = MakeFolder(folder);
  held.emplace(folder);
  // What was there and is gone could come back as a link.
  if (held->IsMissing() && !was_there) {
    return std::nullopt;
  }
  if (!leads_elsewhere()) {
    return held->Error();
  }
  held.reset();
  if (const std::optional<DWORD> error = DeleteEntry(folder, EntryKind::kFolder, place)) {
    return error;
  }
  MakeFolder(folder);
  held.emplace(folder);
  return leads_elsewhere() ? ERROR_CANT_ACCESS_FILE : held->Error();
}

}  // namespace

bool CFolderCopy::Copy(const std::wstring& destination, const std::wstring& source,
                       const CopyOptions& options) {
  Announce(destination, source, options);
  if (!folders_.HasBaseFolder()) {
    return true;
  }
  MakeFolder(destination);
  removal_ = CFolderRemoval(folders_.base_folder);
  return CopyContent(destination, PlaceOfFolder(destination), source, options, true);
}

bool CFolderCopy::CopyContent(const std::wstring& destination, const CPlace& place,
                              const std::wstring& source, const CopyOptions& options,
                              bool may_be_missing) {
  CFolderListing listing(source);
  // As long as it is held the destination can't get empty, and only an empty folder can be turned
  // into a link.
  std::optional<CHeldFolder> first;
  while (listing.Next()) {
    const std::wstring relative_path = L"\\" + listing.Name();
    const std::wstring entry = source + relative_path;
    const std::wstring target = destination + relative_path;
    if (listing.IsFolder()) {
      if (options.recurse && !CopySubFolder(target, place.Below(relative_path), entry,
                                            listing.IsLink(), options, first)) {
        return false;
      }
    } else if (!CopyOneFile(target, entry, options)) {
      return false;
    }
  }
  if (listing.Error() && !(may_be_missing && listing.HasNoFolder())) {
    return Fail(destination, *listing.Error(), options);  // what wasn't seen wasn't copied either
  }
  return true;
}

bool CFolderCopy::CopyWithRetries(const std::wstring& destination, const std::wstring& source,
                                  const CopyOptions& options) {
  for (int attempt = 0; attempt < kCopyAttempts; ++attempt) {
    if (Copy(destination, source, options)) {
      log_.Write(LogLevel::kInformation, L"Copy complete.");
      return true;
    }
    log_.Write(LogLevel::kWarning, L"Copy fail, sleep 3 seconds and retry.");
    ::Sleep(kCopyRetryDelayMs);
  }
  log_.Write(LogLevel::kError, L"Fail to copy folder.");
  return false;
}

bool CFolderCopy::CopyOneFile(const std::wstring& target, const std::wstring& source,
                              const CopyOptions& options) {
  if (options.log_details) {
    log_.WriteText(LogLevel::kInformation, L"Copy file from " + source + L" to " + target);
  }
  if (::CopyFileW(PathForWindows(source).c_str(), PathForWindows(target).c_str(), FALSE)) {
    return true;
  }
  const DWORD error = ::GetLastError();
  return Fail(target, error, options);
}

bool CFolderCopy::CopySubFolder(const std::wstring& target, const CPlace& place,
                                const std::wstring& source, bool source_is_link,
                                const CopyOptions& options, std::optional<CHeldFolder>& first) {
  // The program that is running can't replace itself; an earlier stage has done that.
  if (target == folders_.module_folder) {
    return true;
  }
  if (options.delete_existing_sub_folders) {
    DeleteExistingFolder(target, source, options);
  }
  Announce(target, source, options);
  const bool way_is_kept = first && IsTakenAsItStands(target);
  std::optional<CHeldFolder> held;
  if (const std::optional<DWORD> error = MakePlainFolder(target, place, way_is_kept, held)) {
    return Fail(target, *error, options);
  }
  if (source_is_link) {
    return true;  // what it leads to is none of the product's
  }
  // It may have become a link since it was listed; while it is held nobody can exchange it. By a
  // name that Windows reads otherwise another folder is held than the one that is read then.
  const CHeldFolder held_source(source);
  if (held_source.Error() || held_source.IsLink() || !IsTakenAsItStands(FileName(source))) {
    return Fail(target, held_source.Error().value_or(ERROR_CANT_ACCESS_FILE), options);
  }
  CopyOptions deeper = options;
  deeper.delete_existing_sub_folders = false;
  if (!CopyContent(target, place, source, deeper, false)) {
    return false;
  }
  if (!first && held->LiesExactlyAt(place)) {
    first = std::move(held);
  }
  return true;
}

// What is to be copied must not be deleted with the folder that it lies in. One folder can go by
// many names, so the places are compared where the paths don't tell.
void CFolderCopy::DeleteExistingFolder(const std::wstring& target, const std::wstring& source,
                                       const CopyOptions& options) {
  if (IsSameOrInside(source, target)) {
    return;
  }
  bool is_missing = false;
  {
    const CHeldFolder held(target);
    if (held.MayHold(source)) {
      return;
    }
    is_missing = held.IsMissing();
  }
  if (options.log_details) {
    log_.WriteText(LogLevel::kInformation, L"Delete Dir : " + target);
  }
  if (!is_missing) {
    std::ignore = removal_.Delete(target);  // what stays is copied over
  }
}

void CFolderCopy::Announce(const std::wstring& destination, const std::wstring& source,
                           const CopyOptions& options) const {
  if (options.log_details) {
    log_.WriteText(LogLevel::kInformation, L"Copy folder from " + source + L" to " + destination);
  }
}

bool CFolderCopy::Fail(const std::wstring& path, DWORD error, const CopyOptions& options) {
  if (options.log_details) {
    log_.Write(LogLevel::kError, L"Fail to copy file = %d", error);
  }
  last_failed_path_ = path;
  return false;
}

}  // namespace nhupdate
