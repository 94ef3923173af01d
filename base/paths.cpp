#include "base/paths.h"

#include <cstddef>

#include "base/strings.h"

namespace nhupdate {

std::wstring ParentFolder(const std::wstring& path) {
  const std::size_t last_backslash = path.rfind(L'\\');
  return last_backslash == std::wstring::npos ? std::wstring() : path.substr(0, last_backslash);
}

std::wstring FileName(const std::wstring& path) {
  const std::size_t last_backslash = path.rfind(L'\\');
  return last_backslash == std::wstring::npos ? path : path.substr(last_backslash + 1);
}

bool IsSameOrInside(const std::wstring& path, const std::wstring& folder) {
  return EqualsIgnoringCase(path, folder) || StartsWithIgnoringCase(path, folder + L"\\");
}

}  // namespace nhupdate
