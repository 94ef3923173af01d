#include "base/folder_place.h"

#include <vector>

namespace nhupdate {

namespace {

UniqueFile Hold(const std::wstring& folder, DWORD flags) {
  // Read access, without which Windows doesn't look at the sharing, and no sharing for deletion.
  return UniqueFile(::CreateFileW(folder.c_str(), FILE_LIST_DIRECTORY,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr));
}

// Windows ignores the letter case, and not only that of the letters of English.
bool AreSameText(const std::wstring& left, const std::wstring& right) {
  return ::CompareStringOrdinal(left.c_str(), static_cast<int>(left.size()), right.c_str(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace

bool MeansLink(DWORD attributes, DWORD reparse_tag) {
  constexpr DWORD kNoTag = 0;
  return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (reparse_tag == kNoTag || IsReparseTagNameSurrogate(reparse_tag));
}

UniqueFile HoldFolderItself(const std::wstring& folder) {
  return Hold(folder, FILE_FLAG_OPEN_REPARSE_POINT);
}

UniqueFile HoldFolder(const std::wstring& folder) {
  return Hold(folder, 0);
}

bool IsLink(const UniqueFile& opened) {
  FILE_ATTRIBUTE_TAG_INFO information = {};
  if (!::GetFileInformationByHandleEx(opened.Get(), FileAttributeTagInfo, &information,
                                      sizeof(information))) {
    return true;  // not known to be none
  }
  return MeansLink(information.FileAttributes, information.ReparseTag);
}

CPlace::CPlace(const UniqueFile& opened) {
  constexpr DWORD kForm = FILE_NAME_NORMALIZED | VOLUME_NAME_NT;
  const DWORD size = ::GetFinalPathNameByHandleW(opened.Get(), nullptr, 0, kForm);
  std::vector<wchar_t> path(size + 1, L'\0');
  const DWORD length = ::GetFinalPathNameByHandleW(opened.Get(), path.data(), size, kForm);
  if (length == 0 || length >= path.size()) {
    return;
  }
  // Only a drive's root has a trailing backslash.
  path_.assign(path.data(), path[length - 1] == L'\\' ? length - 1 : length);
}

bool CPlace::IsSameAs(const CPlace& other) const {
  return IsKnown() && AreSameText(path_, other.path_);
}

bool CPlace::IsWithin(const CPlace& folder) const {
  if (!IsKnown() || !folder.IsKnown() || path_.size() < folder.path_.size()) {
    return false;
  }
  const std::size_t end = folder.path_.size();
  return (path_.size() == end || path_[end] == L'\\') &&
         AreSameText(path_.substr(0, end), folder.path_);
}

CPlace CPlace::Below(const std::wstring& relative_path) const {
  CPlace place;
  if (IsKnown()) {
    place.path_ = path_ + relative_path;
  }
  return place;
}

}  // namespace nhupdate
