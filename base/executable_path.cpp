#include "base/executable_path.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "base/windows_path.h"

namespace nhupdate {

namespace {

constexpr std::size_t kMaxUnits = MAX_PATH - 1;
constexpr std::size_t kLongestPrefixUnits = 8;  // of a network path in extended-length form

// As the program was started by it.
ExecutablePath StartPath() {
  std::array<wchar_t, MAX_PATH + kLongestPrefixUnits> buffer = {};
  const DWORD length =
      ::GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
  const std::size_t units = std::min<std::size_t>(length, buffer.size() - 1);
  const std::wstring path = WithoutExtendedPrefix(std::wstring(buffer.data(), units));
  return {path.substr(0, kMaxUnits), length >= buffer.size() || path.size() > kMaxUnits};
}

// With the long names of all components; the path as it is when Windows doesn't tell.
std::wstring WithLongNames(const std::wstring& path) {
  std::vector<wchar_t> buffer(MAX_PATH);
  DWORD length = ::GetLongPathNameW(PathForWindows(path).c_str(), buffer.data(), MAX_PATH);
  if (length >= buffer.size()) {
    buffer.resize(length + std::size_t{1});
    length = ::GetLongPathNameW(PathForWindows(path).c_str(), buffer.data(), length);
  }
  return length == 0 || length >= buffer.size()
             ? path
             : WithoutExtendedPrefix(std::wstring(buffer.data(), length));
}

// The name of a file or folder in its own letter case; empty when Windows doesn't tell.
std::wstring NameOnDisk(const std::wstring& path) {
  WIN32_FIND_DATAW entry = {};
  const UniqueFindHandle search(::FindFirstFileW(PathForWindows(path).c_str(), &entry));
  return search.IsValid() ? entry.cFileName : std::wstring();
}

// Where the names on the disk begin: behind the drive, or behind the server and its share.
std::size_t UnitsOfRoot(const std::wstring& path) {
  if (!path.starts_with(L"\\\\")) {
    return path.find(L'\\') + 1;
  }
  const std::size_t behind_server = path.find(L'\\', 2);
  const std::size_t behind_share =
      behind_server == std::wstring::npos ? behind_server : path.find(L'\\', behind_server + 1);
  return behind_share == std::wstring::npos ? path.size() : behind_share + 1;
}

// Long names alone may still be in the letter case of whoever typed them.
std::wstring WithNamesOnDisk(const std::wstring& path) {
  std::wstring result = path;
  std::size_t begin = UnitsOfRoot(path);
  while (begin < result.size()) {
    const std::size_t end = std::min(result.find(L'\\', begin), result.size());
    std::wstring name = NameOnDisk(result.substr(0, end));
    if (name.empty()) {
      name = result.substr(begin, end - begin);
    }
    result.replace(begin, end - begin, name);
    begin += name.size() + 1;
  }
  return result;
}

}  // namespace

ExecutablePath FindExecutable() {
  ExecutablePath executable = StartPath();
  if (!executable.is_cut_off) {
    const std::wstring path = WithNamesOnDisk(WithLongNames(executable.path));
    executable = {path.substr(0, kMaxUnits), path.size() > kMaxUnits};
  }
  return executable;
}

}  // namespace nhupdate
