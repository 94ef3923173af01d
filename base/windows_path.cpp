#include "base/windows_path.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "base/strings.h"

namespace nhupdate {

namespace {

constexpr std::wstring_view kPrefix = L"\\\\?\\";
constexpr std::wstring_view kNetworkPrefix = L"\\\\?\\UNC\\";
constexpr std::wstring_view kNetworkBegin = L"\\\\";

// Of a folder: a file's path may have 259 units, but a folder's must leave room for a short name.
constexpr std::size_t kMaxPlainUnits = 247;

bool BeginsWithDrive(std::wstring_view path) {
  return path.size() >= 3 && path[1] == L':' && path[2] == L'\\';
}

// A server's name, as against "?" and ".", which begin the names of devices.
bool BeginsWithServer(std::wstring_view path) {
  return path.size() >= 3 && path.starts_with(kNetworkBegin) && path[2] != L'?' && path[2] != L'.';
}

}  // namespace

std::wstring PathForWindows(const std::wstring& path) {
  if (path.size() <= kMaxPlainUnits) {
    return path;
  }
  std::wstring extended;
  if (BeginsWithDrive(path)) {
    extended = std::wstring(kPrefix) + path;
  } else if (BeginsWithServer(path)) {
    extended = std::wstring(kNetworkPrefix) + path.substr(kNetworkBegin.size());
  } else {
    return path;
  }
  // In this form a slash would be a character of a name.
  std::replace(extended.begin(), extended.end(), L'/', L'\\');
  return extended;
}

std::wstring WithoutExtendedPrefix(const std::wstring& path) {
  if (StartsWithIgnoringCase(path, std::wstring(kNetworkPrefix))) {
    return std::wstring(kNetworkBegin) + path.substr(kNetworkPrefix.size());
  }
  const bool names_drive =
      path.starts_with(kPrefix) && BeginsWithDrive(std::wstring_view(path).substr(kPrefix.size()));
  return names_drive ? path.substr(kPrefix.size()) : path;
}

bool IsTakenAsItStands(const std::wstring& path) {
  const std::wstring names = path + L"\\";
  return names.find(L".\\") == std::wstring::npos && names.find(L" \\") == std::wstring::npos;
}

}  // namespace nhupdate
