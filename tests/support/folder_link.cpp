#include "tests/support/folder_link.h"

#include <gtest/gtest.h>

#include <cstddef>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/fence.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

using UnixFileName = char*(__cdecl*)(const wchar_t*);

UnixFileName FindUnixFileName() {
  return reinterpret_cast<UnixFileName>(reinterpret_cast<void*>(
      ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
}

std::wstring UnixPath(UnixFileName unix_file_name, const std::wstring& path) {
  char* const name = unix_file_name(path.c_str());
  std::wstring copy = name != nullptr ? ToWide(name) : L"";
  ::HeapFree(::GetProcessHeap(), 0, name);
  return copy;
}

// The path of the link itself: asked for the whole path, Wine would follow the link.
std::wstring UnixPathOfLink(UnixFileName unix_file_name, const std::wstring& link) {
  const std::size_t name = link.rfind(L'\\');
  return UnixPath(unix_file_name, link.substr(0, name)) + L"/" + link.substr(name + 1);
}

// Runs a program of the system below Wine and waits until the link is there, or gone; false when it
// can't be started or that takes too long.
bool RunOutsideOfWine(const wchar_t* program, std::wstring command_line, const std::wstring& link,
                      bool is_link_wanted) {
  const AllowOutside open("ln and rm are programs of the system below");
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION information = {};
  if (!::CreateProcessW(program, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &information)) {
    return false;
  }
  ::CloseHandle(information.hThread);
  const nhupdate::UniqueKernelHandle process(information.hProcess);
  constexpr DWORD kPollMs = 10;
  constexpr ULONGLONG kTimeLimitMs = 30'000;
  const ULONGLONG end = ::GetTickCount64() + kTimeLimitMs;
  while (::GetTickCount64() < end) {
    if ((::GetFileAttributesW(link.c_str()) != INVALID_FILE_ATTRIBUTES) == is_link_wanted) {
      return true;
    }
    ::Sleep(kPollMs);
  }
  return false;
}

// Wine can't make links, but the system below it can.
bool LinkOutsideOfWine(UnixFileName unix_file_name, const std::wstring& link,
                       const std::wstring& target) {
  return RunOutsideOfWine(L"Z:\\bin\\ln",
                          L"ln -s -T \"" + UnixPath(unix_file_name, target) + L"\" \"" +
                              UnixPathOfLink(unix_file_name, link) + L"\"",
                          link, true);
}

bool RemoveOutsideOfWine(UnixFileName unix_file_name, const std::wstring& link) {
  return RunOutsideOfWine(L"Z:\\bin\\rm", L"rm \"" + UnixPathOfLink(unix_file_name, link) + L"\"",
                          link, false);
}

constexpr wchar_t kDrive[] = L"E:";
constexpr wchar_t kDriveRoot[] = L"E:\\";

// Wine's drives are links in a folder of the system below.
std::wstring UnixPathOfDrive(UnixFileName unix_file_name) {
  const std::wstring drive_c = UnixPath(unix_file_name, L"C:\\");
  return drive_c.substr(0, drive_c.rfind(L"/c:")) + L"/e:";
}

DWORD KindOf(const std::wstring& target) {
  const DWORD attributes = ::GetFileAttributesW(target.c_str());
  const bool is_folder =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return is_folder ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0;
}

}  // namespace

void CreateLink(const std::wstring& link, const std::wstring& target) {
  if (::CreateSymbolicLinkW(link.c_str(), target.c_str(), KindOf(target)) &&
      ::GetFileAttributesW(link.c_str()) != INVALID_FILE_ATTRIBUTES) {
    return;
  }
  const UnixFileName unix_file_name = FindUnixFileName();
  EXPECT_TRUE(unix_file_name != nullptr && LinkOutsideOfWine(unix_file_name, link, target))
      << "Can't make the link " << ToUtf8(link);
}

void RemoveFolderLink(const std::wstring& link) {
  const DWORD attributes = ::GetFileAttributesW(link.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 ||
      ::RemoveDirectoryW(link.c_str())) {
    return;
  }
  const UnixFileName unix_file_name = FindUnixFileName();
  EXPECT_TRUE(unix_file_name != nullptr && RemoveOutsideOfWine(unix_file_name, link))
      << "Can't remove the link " << ToUtf8(link);
}

CFolderAsDrive::CFolderAsDrive(const std::wstring& folder) {
  EXPECT_TRUE(::DefineDosDeviceW(0, kDrive, folder.c_str()));
  // Under Wine that alone makes a drive on which no files are found.
  if (const UnixFileName unix_file_name = FindUnixFileName()) {
    EXPECT_TRUE(RunOutsideOfWine(L"Z:\\bin\\ln",
                                 L"ln -s -f -T \"" + UnixPath(unix_file_name, folder) + L"\" \"" +
                                     UnixPathOfDrive(unix_file_name) + L"\"",
                                 kDriveRoot, true));
  }
}

CFolderAsDrive::~CFolderAsDrive() {
  EXPECT_TRUE(::DefineDosDeviceW(DDD_REMOVE_DEFINITION, kDrive, nullptr));
  if (const UnixFileName unix_file_name = FindUnixFileName()) {
    EXPECT_TRUE(RunOutsideOfWine(L"Z:\\bin\\rm", L"rm \"" + UnixPathOfDrive(unix_file_name) + L"\"",
                                 kDriveRoot, false));
  }
}

}  // namespace nhupdate_test
