#include "base/known_folder.h"

#include "base/windows.h"

// These need <windows.h> first.
#include <knownfolders.h>
#include <objbase.h>
#include <shlobj.h>

namespace nhupdate {

std::optional<std::wstring> ProgramDataFolder() {
  PWSTR shell_text = nullptr;
  const HRESULT result = ::SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, &shell_text);
  std::optional<std::wstring> folder;
  if (SUCCEEDED(result)) {
    folder = shell_text;
  }
  // Also after a failure: the shell asks for it, and a null pointer is ignored.
  ::CoTaskMemFree(shell_text);
  return folder;
}

}  // namespace nhupdate
