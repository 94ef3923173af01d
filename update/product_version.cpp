#include "update/product_version.h"

#include <array>

#include "base/windows.h"
#include "base/windows_path.h"

namespace nhupdate {

std::wstring ReadProductVersion(const std::wstring& folder) {
  const std::wstring file = folder + L"\\Version.txt";
  std::array<wchar_t, 256> buffer = {};
  ::GetPrivateProfileStringW(L"ProductVersion", L"Version", L"", buffer.data(),
                             static_cast<DWORD>(buffer.size()), PathForWindows(file).c_str());
  return buffer.data();
}

}  // namespace nhupdate
