#include "base/folder_place.h"

#include <cstddef>
#include <vector>

#include "base/paths.h"
#include "base/windows_path.h"

namespace nhupdate {

namespace {

UniqueFile Hold(const std::wstring& folder, DWORD flags) {
  // Read access, without which Windows doesn't look at the sharing, and no sharing for deletion.
  return UniqueFile(::CreateFileW(PathForWindows(folder).c_str(), FILE_LIST_DIRECTORY,
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
  FILE_BASIC_INFO plain = {};
  if (!::GetFileInformationByHandleEx(opened.Get(), FileBasicInfo, &plain, sizeof(plain))) {
    return true;  // not known to be none
  }
  if ((plain.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return false;
  }
  // Asked last: FAT and exFAT don't know this question.
  FILE_ATTRIBUTE_TAG_INFO tagged = {};
  if (!::GetFileInformationByHandleEx(opened.Get(), FileAttributeTagInfo, &tagged,
                                      sizeof(tagged))) {
    return true;
  }
  return MeansLink(tagged.FileAttributes, tagged.ReparseTag);
}

CPlace::CPlace(const UniqueFile& opened) {
  constexpr DWORD kForm = FILE_NAME_NORMALIZED | VOLUME_NAME_NT;
  std::vector<wchar_t> path(MAX_PATH);
  DWORD length = ::GetFinalPathNameByHandleW(opened.Get(), path.data(), MAX_PATH, kForm);
  if (length >= path.size()) {
    // Too long for that: the length is then the room that is needed.
    path.resize(length + std::size_t{1});
    length = ::GetFinalPathNameByHandleW(opened.Get(), path.data(), length, kForm);
  }
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

CPlace PlaceOfFolder(const std::wstring& folder) {
  // Without the backslash a bare drive letter would mean the drive's current folder.
  const UniqueFile opened = HoldFolder(folder + L"\\");
  return opened.IsValid() ? CPlace(opened) : CPlace();
}

CPlace PlaceSeenFrom(const std::wstring& anchor, const std::wstring& path) {
  return IsSameOrInside(path, anchor) ? PlaceOfFolder(anchor).Below(path.substr(anchor.size()))
                                      : CPlace();
}

}  // namespace nhupdate
