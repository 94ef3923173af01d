#include "base/current_folder.h"

#include <array>

#include "base/windows.h"

namespace nhupdate {

namespace {

using PathBuffer = std::array<wchar_t, MAX_PATH>;

std::wstring TextIn(const PathBuffer& buffer, DWORD length) {
  return length < buffer.size() ? std::wstring(buffer.data(), length) : std::wstring();
}

std::wstring CurrentFolder() {
  PathBuffer buffer = {};
  return TextIn(buffer, ::GetCurrentDirectoryW(static_cast<DWORD>(buffer.size()), buffer.data()));
}

std::wstring SystemFolder() {
  PathBuffer buffer = {};
  return TextIn(buffer, ::GetSystemDirectoryW(buffer.data(), static_cast<UINT>(buffer.size())));
}

}  // namespace

CSystemFolderAsCurrent::CSystemFolderAsCurrent() {
  const std::wstring old_folder = CurrentFolder();
  if (::SetCurrentDirectoryW(SystemFolder().c_str())) {
    old_folder_ = old_folder;
  }
}

CSystemFolderAsCurrent::~CSystemFolderAsCurrent() {
  if (!old_folder_.empty()) {
    ::SetCurrentDirectoryW(old_folder_.c_str());
  }
}

}  // namespace nhupdate
