#include "base/current_folder.h"

#include <array>
#include <cstddef>

#include "base/windows.h"

namespace nhupdate {

namespace {

std::wstring CurrentFolder() {
  const DWORD needed = ::GetCurrentDirectoryW(0, nullptr);
  std::wstring folder(needed, L'\0');
  const DWORD length = ::GetCurrentDirectoryW(needed, folder.data());
  folder.resize(length < needed ? length : 0);
  return folder;
}

std::wstring SystemFolder() {
  std::array<wchar_t, MAX_PATH> buffer = {};
  const std::size_t length = ::GetSystemDirectoryW(buffer.data(), static_cast<UINT>(buffer.size()));
  return length < buffer.size() ? std::wstring(buffer.data(), length) : std::wstring();
}

}  // namespace

CSystemFolderAsCurrent::CSystemFolderAsCurrent() : old_folder_(CurrentFolder()) {
  is_current_ = ::SetCurrentDirectoryW(SystemFolder().c_str()) != FALSE;
}

CSystemFolderAsCurrent::~CSystemFolderAsCurrent() {
  if (is_current_ && !old_folder_.empty()) {
    ::SetCurrentDirectoryW(old_folder_.c_str());
  }
}

}  // namespace nhupdate
