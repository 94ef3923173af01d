#include "base/held_folder.h"

#include "base/paths.h"

namespace nhupdate {

CHeldFolder::CHeldFolder(const std::wstring& folder) : path_(folder) {
  folder_ = HoldFolderItself(folder);
  const DWORD error = ::GetLastError();
  if (!folder_.IsValid()) {
    error_ = error;
  }
}

bool CHeldFolder::IsPlainWithin(const std::wstring& anchor) const {
  if (!folder_.IsValid() || IsLink(folder_) || !IsSameOrInside(path_, anchor)) {
    return false;
  }
  // The backslash makes the drive's root of a bare drive letter, which means its current folder.
  const UniqueFile anchor_folder = HoldFolder(anchor + L"\\");
  if (!anchor_folder.IsValid()) {
    return false;
  }
  return CPlace(folder_).IsSameAs(CPlace(anchor_folder).Below(path_.substr(anchor.size())));
}

bool CHeldFolder::MayHold(const std::wstring& path) const {
  if (!folder_.IsValid()) {
    return error_ != ERROR_FILE_NOT_FOUND && error_ != ERROR_PATH_NOT_FOUND;
  }
  const UniqueFile other = HoldFolder(path);
  if (!other.IsValid()) {
    return true;
  }
  const CPlace own_place(folder_);
  const CPlace other_place(other);
  return !own_place.IsKnown() || !other_place.IsKnown() || other_place.IsWithin(own_place);
}

}  // namespace nhupdate
