#include "tests/unit/install/fake_listing.h"

namespace nhupdate_test {

namespace {

// A pattern's last part is the wildcard or, where one entry is asked for, that entry.
std::wstring FolderOfPattern(const std::wstring& pattern) {
  return pattern.substr(0, pattern.find_last_of(L"\\/"));
}

}  // namespace

FakeListing::FakeListing()
    : find_first_("FindFirstFileW",
                  [this](const wchar_t* pattern, WIN32_FIND_DATAW* entry) -> HANDLE {
                    patterns_.push_back(pattern);
                    const std::wstring folder = FolderOfPattern(pattern);
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
                  }),
      find_next_("FindNextFileW", [this](HANDLE search, WIN32_FIND_DATAW* entry) {
        const BOOL is_found = find_next_.Original()(search, entry);
        if (is_found) {
          ApplyDisguise(folders_[search], *entry);
        }
        return is_found;
      }) {}

void FakeListing::Disguise(const std::wstring& path, DWORD attributes, DWORD reparse_tag) {
  disguises_[path] = {attributes, reparse_tag};
}

void FakeListing::ApplyDisguise(const std::wstring& folder, WIN32_FIND_DATAW& entry) const {
  const auto disguise = disguises_.find(folder + L"\\" + entry.cFileName);
  if (disguise != disguises_.end()) {
    entry.dwFileAttributes |= disguise->second.attributes;
    entry.dwReserved0 = disguise->second.reparse_tag;
  }
}

}  // namespace nhupdate_test
