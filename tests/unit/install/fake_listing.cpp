#include "tests/unit/install/fake_listing.h"

namespace nhupdate_test {

namespace {

// A pattern's last part is the wildcard or, where one entry is asked for, that entry.
std::wstring FolderOfPattern(const std::wstring& pattern) {
  return pattern.substr(0, pattern.find_last_of(L"\\/"));
}

}  // namespace

FakeListing::FakeListing()
    : find_first_([this](const wchar_t* pattern, WIN32_FIND_DATAW* entry) -> HANDLE {
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
      find_next_([this](HANDLE search, WIN32_FIND_DATAW* entry) -> BOOL {
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
      }),
      create_file_([this](const wchar_t* path, DWORD access, DWORD sharing,
                          SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                          HANDLE model) {
        const HANDLE file =
            create_file_.Original()(path, access, sharing, security, disposition, flags, model);
        opened_[file] = path;
        return file;
      }),
      information_(
          [this](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
            const BOOL is_known = information_.Original()(file, kind, information, size);
            const auto disguise = disguises_.find(opened_[file]);
            if (kind == FileAttributeTagInfo && disguise != disguises_.end()) {
              auto* tag_information = static_cast<FILE_ATTRIBUTE_TAG_INFO*>(information);
              tag_information->FileAttributes |= disguise->second.attributes;
              tag_information->ReparseTag = disguise->second.reparse_tag;
            }
            return is_known;
          }),
      final_path_([this](HANDLE file, wchar_t* buffer, DWORD units, DWORD flags) -> DWORD {
        const auto final_path = final_paths_.find(opened_[file]);
        if (final_path == final_paths_.end()) {
          return final_path_.Original()(file, buffer, units, flags);
        }
        const std::size_t length = final_path->second.size();
        if (length >= units) {
          return static_cast<DWORD>(length + 1);
        }
        final_path->second.copy(buffer, length);
        buffer[length] = L'\0';
        return static_cast<DWORD>(length);
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
