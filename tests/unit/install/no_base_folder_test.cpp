// An executable in a drive's root has no folder above its own, and one whose path isn't known has
// none either: there is no product to clean up, and what lies on the drive is none of the program's
// business.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "app/manager_center.h"
#include "tests/support/interposer.h"
#include "tests/support/quiet_desktop.h"

// These need <windows.h> first.
#include <psapi.h>
#include <shellapi.h>
#include <shlobj.h>

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

class NoBaseFolderTest : public testing::TestWithParam<std::wstring> {
 protected:
  std::vector<std::wstring> patterns_;
  nhupdate::CManagerCenter manager_;
  const QuietDesktop desktop_;
  INTERPOSER(GetModuleFileNameW) module_file_name_{
      [](HMODULE, wchar_t* buffer, DWORD units) -> DWORD {
        const std::wstring& executable = GetParam();
        const std::size_t length = executable.copy(buffer, units - 1);
        buffer[length] = L'\0';
        return static_cast<DWORD>(length);
      }};
  INTERPOSER(SHGetKnownFolderPath) known_folder_{
      [](REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) -> HRESULT {
        *path = nullptr;
        return E_FAIL;
      }};
  INTERPOSER(GetTokenInformation) token_information_{
      [](HANDLE, TOKEN_INFORMATION_CLASS, void* information, DWORD, DWORD*) -> BOOL {
        static_cast<TOKEN_ELEVATION*>(information)->TokenIsElevated = 1;
        return TRUE;
      }};
  INTERPOSER(K32EnumProcesses) processes_{[](DWORD*, DWORD, DWORD*) { return FALSE; }};
  INTERPOSER(ShellExecuteW) shell_{[](HWND, const wchar_t*, const wchar_t*, const wchar_t*,
                                      const wchar_t*,
                                      int) { return reinterpret_cast<HINSTANCE>(INT_PTR{33}); }};
  INTERPOSER(CreateDirectoryW) create_{
      [](const wchar_t*, SECURITY_ATTRIBUTES*) -> BOOL { return FALSE; }};
  INTERPOSER(RegCreateKeyExW) key_{[](HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM,
                                      SECURITY_ATTRIBUTES*, HKEY*,
                                      DWORD*) -> LSTATUS { return ERROR_ACCESS_DENIED; }};
  INTERPOSER(FindFirstFileW) find_{[this](const wchar_t* pattern, WIN32_FIND_DATAW*) -> HANDLE {
    patterns_.push_back(pattern);
    ::SetLastError(ERROR_PATH_NOT_FOUND);
    return INVALID_HANDLE_VALUE;
  }};
  INTERPOSER(DeleteFileW) delete_file_{[](const wchar_t*) -> BOOL { return TRUE; }};
};

TEST_P(NoBaseFolderTest, AFinalUpdateNeverLooksAtTheDrivesRoot) {
  manager_.Initialize();

  EXPECT_EQ(manager_.InstallSequence(1), 0);

  EXPECT_THAT(patterns_, ElementsAre(L"\\Updater\\App\\*.*", L"\\Updater\\App\\*.*"));
  EXPECT_EQ(delete_file_.Calls(), 0);
}

TEST_P(NoBaseFolderTest, ASelfUpdateNeverCopiesTheDrive) {
  manager_.Initialize();

  EXPECT_EQ(manager_.SelfUpdate(), 16);

  EXPECT_TRUE(patterns_.empty());
  EXPECT_THAT(desktop_.Boxes(),
              ElementsAre(ShownBox{L"KEY_FAIL_COMMON_ERROR", L"KEY_UPDATE_TITLE", 0x40010, true}));
}

INSTANTIATE_TEST_SUITE_P(WhereverItIs, NoBaseFolderTest,
                         testing::Values(L"C:\\NHUpdateManager.exe", L""));

}  // namespace
}  // namespace nhupdate_test
