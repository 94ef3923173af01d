// An executable in a drive's root has no folder above its own: there is no product to clean up, and
// what lies on the drive is none of the program's business.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/manager_center.h"
#include "tests/support/interposer.h"

// These need <windows.h> first.
#include <psapi.h>
#include <shellapi.h>
#include <shlobj.h>

namespace nhupdate_test {
namespace {

TEST(NoBaseFolderTest, AFinalUpdateNeverLooksAtTheDrivesRoot) {
  const std::wstring executable = L"C:\\NHUpdateManager.exe";
  std::vector<std::wstring> patterns;
  int deletions = 0;
  nhupdate::CManagerCenter manager;
  Interposer<decltype(::GetModuleFileNameW)> module_file_name(
      "GetModuleFileNameW", [&](HMODULE, wchar_t* buffer, DWORD) -> DWORD {
        executable.copy(buffer, executable.size());
        return static_cast<DWORD>(executable.size());
      });
  Interposer<decltype(::SHGetKnownFolderPath)> known_folder(
      "SHGetKnownFolderPath", [](REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) -> HRESULT {
        *path = nullptr;
        return E_FAIL;
      });
  Interposer<decltype(::K32EnumProcesses)> processes("K32EnumProcesses",
                                                     [](DWORD*, DWORD, DWORD*) { return FALSE; });
  Interposer<decltype(::ShellExecuteW)> shell(
      "ShellExecuteW", [](HWND, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*,
                          int) { return reinterpret_cast<HINSTANCE>(INT_PTR{33}); });
  Interposer<decltype(::CreateDirectoryW)> create(
      "CreateDirectoryW", [](const wchar_t*, SECURITY_ATTRIBUTES*) -> BOOL { return FALSE; });
  Interposer<decltype(::RegCreateKeyExW)> key(
      "RegCreateKeyExW",
      [](HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM, SECURITY_ATTRIBUTES*, HKEY*,
         DWORD*) -> LSTATUS { return ERROR_ACCESS_DENIED; });
  Interposer<decltype(::FindFirstFileW)> find(
      "FindFirstFileW", [&](const wchar_t* pattern, WIN32_FIND_DATAW*) -> HANDLE {
        patterns.push_back(pattern);
        ::SetLastError(ERROR_PATH_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
      });
  Interposer<decltype(::DeleteFileW)> delete_file("DeleteFileW", [&](const wchar_t*) -> BOOL {
    ++deletions;
    return TRUE;
  });
  manager.Initialize();

  EXPECT_EQ(manager.InstallSequence(1), 0);

  EXPECT_THAT(patterns, testing::ElementsAre(L"\\Updater\\App\\*.*", L"\\Updater\\App\\*.*"));
  EXPECT_EQ(deletions, 0);
}

}  // namespace
}  // namespace nhupdate_test
