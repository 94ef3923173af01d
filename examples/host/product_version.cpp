#include "product_version.h"

#include "windows_api.h"

namespace nimba_hub {

std::wstring VersionIn(const std::filesystem::path& folder) {
  constexpr std::size_t kLongestVersion = 256;
  std::wstring version(kLongestVersion, L'\0');
  version.resize(::GetPrivateProfileStringW(L"ProductVersion", L"Version", L"", version.data(),
                                            static_cast<DWORD>(version.size()),
                                            (folder / L"Version.txt").c_str()));
  return version;
}

}  // namespace nimba_hub
