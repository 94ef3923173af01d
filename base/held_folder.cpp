#include "base/held_folder.h"

namespace nhupdate {

CHeldFolder::CHeldFolder(const std::wstring& folder) {
  folder_ = HoldFolderItself(folder);
  const DWORD error = ::GetLastError();
  if (!folder_.IsValid()) {
    error_ = error;
  }
}

bool CHeldFolder::IsMissing() const {
  return error_ == ERROR_FILE_NOT_FOUND || error_ == ERROR_PATH_NOT_FOUND;
}

bool CHeldFolder::IsLink() const {
  return folder_.IsValid() && nhupdate::IsLink(folder_);
}

bool CHeldFolder::IsPlain() const {
  return folder_.IsValid() && IsPlainFolder(folder_);
}

bool CHeldFolder::IsPlainAt(const CPlace& place) const {
  return IsPlain() && OwnPlace().IsSameAs(place);
}

bool CHeldFolder::LiesExactlyAt(const CPlace& place) const {
  return folder_.IsValid() && OwnPlace().IsExactly(place);
}

bool CHeldFolder::LeadsElsewhere(const CPlace& place) const {
  if (!folder_.IsValid()) {
    return false;
  }
  return IsLink() || (OwnPlace().IsKnown() && place.IsKnown() && !OwnPlace().IsSameAs(place));
}

bool CHeldFolder::MayHold(const std::wstring& path) const {
  if (!folder_.IsValid()) {
    return !IsMissing();
  }
  const UniqueFile other = HoldFolder(path);
  if (!other.IsValid()) {
    return true;
  }
  const CPlace other_place(other);
  return !OwnPlace().IsKnown() || !other_place.IsKnown() || other_place.IsWithin(OwnPlace());
}

const CPlace& CHeldFolder::OwnPlace() const {
  if (!place_) {
    place_.emplace(folder_);
  }
  return *place_;
}

}  // namespace nhupdate
