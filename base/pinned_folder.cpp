#include "base/pinned_folder.h"

#include "base/folder_place.h"
#include "base/paths.h"
#include "base/reparse_tag.h"
#include "base/windows.h"

namespace nhupdate {

namespace {

bool IsLink(const UniqueFile& folder) {
  FILE_ATTRIBUTE_TAG_INFO information = {};
  if (!::GetFileInformationByHandleEx(folder.Get(), FileAttributeTagInfo, &information,
                                      sizeof(information))) {
    return true;  // not known to be none
  }
  return MeansLink(information.FileAttributes, information.ReparseTag);
}

}  // namespace

CPinnedFolder::CPinnedFolder(const std::wstring& folder) : path_(folder) {
  folder_ = OpenFolder(folder, FILE_FLAG_OPEN_REPARSE_POINT);
  const DWORD error = ::GetLastError();
  if (!folder_.IsValid()) {
    error_ = error;
  }
}

bool CPinnedFolder::IsAtOrBelow(const std::wstring& anchor) const {
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
         IsSamePlace(FinalPath(folder_), anchor_path + path_.substr(anchor.size()));
}

bool CPinnedFolder::MayHold(const std::wstring& path) const {
  if (!folder_.IsValid()) {
    return error_ != ERROR_FILE_NOT_FOUND && error_ != ERROR_PATH_NOT_FOUND;
  }
  const UniqueFile other = OpenFolder(path, 0);
  if (!other.IsValid()) {
    return true;
  }
  const std::wstring own_path = FinalPath(folder_);
  const std::wstring other_path = FinalPath(other);
  return own_path.empty() || other_path.empty() || IsAtOrBelowPlace(other_path, own_path);
}

}  // namespace nhupdate
