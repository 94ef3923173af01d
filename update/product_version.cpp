#include "update/product_version.h"

#include <array>

#include "base/windows.h"

namespace nhupdate {

std::wstring ReadProductVersion(const std::wstring& folder) {
  const std::wstring file = folder + L"\\Version.txt";
  std::array<wchar_t, 256> buffer = {};
  ::GetPrivateProfileStringW(L"ProductVersion", L"Version", L"", buffer.data(),
                             static_cast<DWORD>(buffer.size()), file.c_str());
  return buffer.data();
}

}  // namespace nhupdate
