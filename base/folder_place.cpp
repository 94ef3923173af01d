#include "base/folder_place.h"

#include <cstddef>
#include <optional>
#include <vector>

#include "base/paths.h"
#include "base/windows_path.h"

namespace nhupdate {

namespace {

UniqueFile Open(const std::wstring& path, DWORD access, DWORD sharing, DWORD flags) {
  // Without the backup semantics a folder could not be opened.
  return UniqueFile(::CreateFileW(PathForWindows(path).c_str(), access, sharing, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr));
}

// Read access, without which Windows doesn't look at the sharing, and no sharing for deletion.
UniqueFile Hold(const std::wstring& folder, DWORD flags) {
  return Open(folder, FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE, flags);
}

UniqueFile LookAt(const std::wstring& path, DWORD flags) {
  return Open(path, FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
              flags);
}

// The attributes and, where there may be one, the reparse tag; nothing when they can't be had.
std::optional<FILE_ATTRIBUTE_TAG_INFO> AttributesOf(const UniqueFile& opened) {
  FILE_BASIC_INFO plain = {};
  if (!::GetFileInformationByHandleEx(opened.Get(), FileBasicInfo, &plain, sizeof(plain))) {
    return std::nullopt;
  }
  if ((plain.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return FILE_ATTRIBUTE_TAG_INFO{plain.FileAttributes, 0};
  }
  // Only asked where there is a tag: FAT and exFAT, which have none, refuse the question.
  FILE_ATTRIBUTE_TAG_INFO tagged = {};
  if (!::GetFileInformationByHandleEx(opened.Get(), FileAttributeTagInfo, &tagged,
                                      sizeof(tagged))) {
    return std::nullopt;
  }
  return tagged;
}

bool MeansLink(const FILE_ATTRIBUTE_TAG_INFO& attributes) {
  return nhupdate::MeansLink(attributes.FileAttributes, attributes.ReparseTag);
}

// The path of what is open, in the kernel's form; empty when it can't be had.
std::wstring FinalPath(const UniqueFile& opened, DWORD form) {
  std::vector<wchar_t> path(MAX_PATH);
  DWORD length = ::GetFinalPathNameByHandleW(opened.Get(), path.data(), MAX_PATH, form);
  if (length >= path.size()) {
    // Too long for that: the length is then the room that is needed.
    path.resize(length + std::size_t{1});
    length = ::GetFinalPathNameByHandleW(opened.Get(), path.data(), length, form);
  }
  return length < path.size() ? std::wstring(path.data(), length) : std::wstring();
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

UniqueFile LookAtItself(const std::wstring& path) {
  return LookAt(path, FILE_FLAG_OPEN_REPARSE_POINT);
}

bool IsLink(const UniqueFile& opened) {
  const std::optional<FILE_ATTRIBUTE_TAG_INFO> attributes = AttributesOf(opened);
  return !attributes || MeansLink(*attributes);
}

bool IsPlainFolder(const UniqueFile& opened) {
  const std::optional<FILE_ATTRIBUTE_TAG_INFO> attributes = AttributesOf(opened);
  return attributes && (attributes->FileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
         !MeansLink(*attributes);
}

CPlace::CPlace(const UniqueFile& opened) {
  path_ = FinalPath(opened, FILE_NAME_NORMALIZED | VOLUME_NAME_NT);
  if (path_.empty()) {
    // Some network drives can't give the long names. The path that it was opened by does as well,
    // since the program opens by long names whatever it compares.
    path_ = FinalPath(opened, FILE_NAME_OPENED | VOLUME_NAME_NT);
  }
  // Only a drive's root has a trailing backslash.
  if (path_.ends_with(L'\\')) {
    path_.pop_back();
  }
}

bool CPlace::IsSameAs(const CPlace& other) const {
  return IsKnown() && AreSameText(path_, other.path_);
}

bool CPlace::IsExactly(const CPlace& other) const {
  return IsKnown() && path_ == other.path_;
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
  const UniqueFile opened = LookAt(folder + L"\\", 0);
  return opened.IsValid() ? CPlace(opened) : CPlace();
}

CPlace PlaceSeenFrom(const std::wstring& anchor, const std::wstring& path) {
  return IsSameOrInside(path, anchor) ? PlaceOfFolder(anchor).Below(path.substr(anchor.size()))
                                      : CPlace();
}

}  // namespace nhupdate
