#include "base/error_box.h"

#include "base/windows.h"

namespace nhupdate {

void ShowErrorBox(const std::wstring& title, const std::wstring& text) {
  ::MessageBoxW(::GetDesktopWindow(), text.c_str(), title.c_str(),
                MB_OK | MB_ICONERROR | MB_TOPMOST);
}

}  // namespace nhupdate
