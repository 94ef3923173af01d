#include "base/folder_making.h"

#include "base/windows.h"
#include "base/windows_path.h"

namespace nhupdate {

bool MakeFolder(const std::wstring& folder) {
  if (::CreateDirectoryW(PathForWindows(folder).c_str(), nullptr)) {
    return true;
  }
  const DWORD error = ::GetLastError();
  return error == ERROR_ALREADY_EXISTS;
}

}  // namespace nhupdate
