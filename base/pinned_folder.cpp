#include "base/pinned_folder.h"

#include <vector>

#include "base/paths.h"
#include "base/reparse_tag.h"
#include "base/windows.h"

namespace nhupdate {

namespace {

// Read access, without which Windows doesn't look at the sharing, and no sharing for deletion.
UniqueFile OpenFolder(const std::wstring& folder, DWORD flags) {
  return UniqueFile(::CreateFileW(folder.c_str(), FILE_LIST_DIRECTORY,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr));
}

bool IsLink(const UniqueFile& folder) {
  FILE_ATTRIBUTE_TAG_INFO information = {};
  if (!::GetFileInformationByHandleEx(folder.Get(), FileAttributeTagInfo, &information,
                                      sizeof(information))) {
    return true;  // not known to be none
  }
  return MeansLink(information.FileAttributes, information.ReparseTag);
}

// The path with all links on the way resolved, in the kernel's form, which every volume has; empty
// when it can't be had.
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

bool IsSameFileName(const std::wstring& left, const std::wstring& right) {
  return ::CompareStringOrdinal(left.c_str(), static_cast<int>(left.size()), right.c_str(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace

CPinnedFolder::CPinnedFolder(const std::wstring& folder)
    : path_(folder), folder_(OpenFolder(folder, FILE_FLAG_OPEN_REPARSE_POINT)) {}

bool CPinnedFolder::IsBelow(const std::wstring& anchor) const {
  if (!folder_.IsValid() || IsLink(folder_) || !IsSameOrInside(path_, anchor)) {
    return false;
  }
  // The anchor itself may well be reached by a link: that was the choice of who installed. The
  // backslash makes the drive's root of a bare drive letter, which means its current folder.
  const UniqueFile anchor_folder = OpenFolder(anchor + L"\\", 0);
  if (!anchor_folder.IsValid()) {
    return false;
  }
  const std::wstring anchor_path = FinalPath(anchor_folder);
  return !anchor_path.empty() &&
         IsSameFileName(FinalPath(folder_), anchor_path + path_.substr(anchor.size()));
}

}  // namespace nhupdate
