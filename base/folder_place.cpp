#include "base/folder_place.h"

#include <vector>

#include "base/windows.h"

namespace nhupdate {

UniqueFile OpenFolder(const std::wstring& folder, DWORD flags) {
  // Read access, without which Windows doesn't look at the sharing, and no sharing for deletion.
  return UniqueFile(::CreateFileW(folder.c_str(), FILE_LIST_DIRECTORY,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr));
}

std::wstring FinalPath(const UniqueFile& folder) {
  constexpr DWORD kForm = FILE_NAME_NORMALIZED | VOLUME_NAME_NT;
  const DWORD size = ::GetFinalPathNameByHandleW(folder.Get(), nullptr, 0, kForm);
  std::vector<wchar_t> path(size + 1, L'\0');
  const DWORD length = ::GetFinalPathNameByHandleW(folder.Get(), path.data(), size, kForm);
  if (length == 0 || length >= path.size()) {
    return {};
  }
  // Only a drive's root has a trailing backslash.
  return std::wstring(path.data(), path[length - 1] == L'\\' ? length - 1 : length);
}

bool IsSamePlace(const std::wstring& left, const std::wstring& right) {
  return ::CompareStringOrdinal(left.c_str(), static_cast<int>(left.size()), right.c_str(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

bool IsAtOrBelowPlace(const std::wstring& path, const std::wstring& folder) {
  const bool ends_with_a_name = path.size() <= folder.size() || path[folder.size()] == L'\\';
  return ends_with_a_name && IsSamePlace(path.substr(0, folder.size()), folder);
}

}  // namespace nhupdate
