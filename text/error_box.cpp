#include <string>
#include <tuple>

#include "app/manager_center.h"
#include "base/windows.h"
#include "text/string_keys.h"

namespace nhupdate {

void CManagerCenter::ShowErrorBox(const std::wstring& text) const {
  const std::wstring caption = GetString(kKeyUpdateTitle);
  // There is nothing to choose: the box only informs.
  std::ignore = ::MessageBoxW(::GetDesktopWindow(), text.c_str(), caption.c_str(),
                              MB_OK | MB_ICONERROR | MB_TOPMOST);
}

}  // namespace nhupdate
