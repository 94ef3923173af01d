#include "tests/support/fake_listing.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cwchar>
#include <functional>
#include <utility>

#include "base/windows_path.h"
#include "tests/support/answers.h"

namespace nhupdate_test {

namespace {

// The search of a folder that is made up.
HANDLE MadeUpSearch() {
  return reinterpret_cast<HANDLE>(std::uintptr_t{0x5EA4C4});
}

// A pattern's last part is the wildcard or, where one entry is asked for, that entry.
std::wstring FolderOfPattern(const std::wstring& pattern) {
  return pattern.substr(0, pattern.find_last_of(L"\\/"));
}

// As a test calls it: a folder may be opened with a backslash at its end, and a long path has a
// prefix.
std::wstring PlainPath(const std::wstring& path) {
  const std::wstring plain = nhupdate::WithoutExtendedPrefix(path);
  return plain.ends_with(L'\\') ? plain.substr(0, plain.size() - 1) : plain;
}

}  // namespace

FakeListing::FakeListing() : FakeListing(false, {}, ERROR_NO_MORE_FILES) {}

FakeListing::FakeListing(std::vector<FakeEntry> entries, DWORD end_error)
    : FakeListing(true, std::move(entries), end_error) {}

FakeListing::FakeListing(bool is_made_up, std::vector<FakeEntry> entries, DWORD end_error)
    : is_made_up_(is_made_up),
      made_up_(std::move(entries)),
      end_error_(end_error),
      find_first_(std::bind_front(&FakeListing::FindFirst, this)),
      find_next_(std::bind_front(&FakeListing::FindNext, this)),
      find_close_(AnswersIf([](HANDLE search) { return search == MadeUpSearch(); }, TRUE)),
      create_file_([this](const wchar_t* path, auto... rest) {
        const HANDLE file = create_file_.Original()(path, rest...);
        opened_[file] = PlainPath(path);
        return file;
      }),
      information_(std::bind_front(&FakeListing::Inform, this)),
      final_path_(std::bind_front(&FakeListing::FinalPath, this)) {}

HANDLE FakeListing::FindFirst(const wchar_t* pattern, WIN32_FIND_DATAW* entry) {
  patterns_.push_back(pattern);
  if (is_made_up_) {
    return GiveMadeUp(entry) ? MadeUpSearch() : INVALID_HANDLE_VALUE;
  }
  const std::wstring folder = FolderOfPattern(PlainPath(pattern));
  const auto forbidden = forbidden_.find(folder);
  if (forbidden != forbidden_.end()) {
    ::SetLastError(forbidden->second);
    return INVALID_HANDLE_VALUE;
  }
  const HANDLE search = find_first_.Original()(pattern, entry);
  if (search != INVALID_HANDLE_VALUE) {
    folders_[search] = folder;
    ApplyDisguise(folder, *entry);
  }
  return search;
}

BOOL FakeListing::FindNext(HANDLE search, WIN32_FIND_DATAW* entry) {
  if (is_made_up_) {
    EXPECT_EQ(search, MadeUpSearch());
    return GiveMadeUp(entry);
  }
  const auto broken = broken_.find(folders_[search]);
  if (broken != broken_.end()) {
    ::SetLastError(broken->second);
    return FALSE;
  }
  const BOOL is_found = find_next_.Original()(search, entry);
  if (is_found) {
    ApplyDisguise(folders_[search], *entry);
  }
  return is_found;
}

BOOL FakeListing::GiveMadeUp(WIN32_FIND_DATAW* entry) {
  if (given_ == made_up_.size()) {
    ::SetLastError(end_error_);
    return FALSE;
  }
  const FakeEntry& made_up = made_up_[given_++];
  *entry = {};
  entry->dwFileAttributes = made_up.attributes;
  entry->dwReserved0 = made_up.reparse_tag;
  std::wcscpy(entry->cFileName, made_up.name);
  return TRUE;
}

std::optional<std::wstring> FakeListing::FinalPathOf(const std::wstring& path) const {
  for (std::size_t end = path.size(); end != std::wstring::npos && end > 0;
       end = path.rfind(L'\\', end - 1)) {
    const auto final_path = final_paths_.find(path.substr(0, end));
    if (final_path != final_paths_.end()) {
      return final_path->second.empty() ? L"" : final_path->second + path.substr(end);
    }
  }
  return std::nullopt;
}

std::optional<DWORD> FakeListing::FinalPath(HANDLE file, wchar_t* buffer, DWORD units, DWORD) {
  const std::optional<std::wstring> path = FinalPathOf(opened_[file]);
  if (!path) {
    return std::nullopt;
  }
  if (path->empty()) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return 0;
  }
  const DWORD length = static_cast<DWORD>(path->size());
  if (length >= units) {
    return length + 1;
  }
  buffer[path->copy(buffer, length)] = L'\0';
  return length;
}

BOOL FakeListing::Inform(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information,
                         DWORD size) {
  const BOOL is_known = information_.Original()(file, kind, information, size);
  const auto disguise = disguises_.find(opened_[file]);
  if (disguise == disguises_.end()) {
    return is_known;
  }
  if (kind == FileBasicInfo) {
    static_cast<FILE_BASIC_INFO*>(information)->FileAttributes |= disguise->second.attributes;
  } else if (kind == FileAttributeTagInfo) {
    auto* const tag = static_cast<FILE_ATTRIBUTE_TAG_INFO*>(information);
    tag->FileAttributes |= disguise->second.attributes;
    tag->ReparseTag = disguise->second.reparse_tag;
  }
  return is_known;
}

void FakeListing::ApplyDisguise(const std::wstring& folder, WIN32_FIND_DATAW& entry) const {
  const auto disguise = disguises_.find(folder + L"\\" + entry.cFileName);
  if (disguise != disguises_.end()) {
    entry.dwFileAttributes |= disguise->second.attributes;
    entry.dwReserved0 = disguise->second.reparse_tag;
  }
}

}  // namespace nhupdate_test
