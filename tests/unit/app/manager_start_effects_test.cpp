// The manager's start-up as Windows sees it: every call that matters, in order.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "app/manager_center.h"
#include "base/paths.h"
#include "base/windows.h"
#include "base/windows_path.h"
#include "tests/support/fake_log_library.h"
#include "tests/support/interposer.h"
#include "tests/support/shell_text.h"
#include "text/utf8.h"

#include <shlobj.h>  // needs <windows.h> first

namespace nhupdate_test {
namespace {

using nhupdate::CManagerCenter;
using nhupdate::ParentFolder;
using nhupdate::Utf8ToWide;

class ManagerStartEffectsTest : public testing::Test {
 protected:
  ManagerStartEffectsTest() {
    library_.on_event = [this](const std::string& event, const std::wstring& details) {
      Note(Utf8ToWide(event.data(), static_cast<int>(event.size())) +
           (details.empty() ? L"" : L" " + nhupdate::WithoutExtendedPrefix(details)));
    };
  }

  void Note(const std::wstring& effect) { effects_.push_back(effect); }

  static inline const HANDLE kToken = reinterpret_cast<HANDLE>(std::uintptr_t{0x70C3A});
  static inline const HANDLE kFolder = reinterpret_cast<HANDLE>(std::uintptr_t{0xF01DE4});

  std::wstring executable_ = L"Q:\\A\\B\\M\\NHUpdateManager.exe";
  std::vector<std::wstring> effects_;
  std::vector<std::wstring> folders_;  // that are open, all by the same handle

  INTERPOSER(GetModuleFileNameW) module_file_name_{
      [this](HMODULE module, wchar_t* buffer, DWORD units) -> DWORD {
        EXPECT_EQ(module, nullptr);
        EXPECT_EQ(units, 268U);
        // As Windows does it: what doesn't fit is cut off.
        const DWORD length = static_cast<DWORD>(executable_.copy(buffer, units));
        buffer[length < units ? length : units - 1] = L'\0';
        return length;
      }};
  INTERPOSER(SHGetKnownFolderPath) known_folder_{
      [this](REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) -> HRESULT {
        Note(L"known folder");
        *path = CopyForShell(L"Q:\\Data");
        return S_OK;
      }};
  INTERPOSER(CreateDirectoryW) create_folder_{
      [this](const wchar_t* path, SECURITY_ATTRIBUTES* security) -> BOOL {
        EXPECT_EQ(security, nullptr);
        Note(L"create " + std::wstring(path));
        return TRUE;
      }};
  INTERPOSER(OpenProcessToken) open_token_{[this](HANDLE, DWORD, HANDLE* token) -> BOOL {
    Note(L"open token");
    *token = kToken;
    return TRUE;
  }};
  INTERPOSER(GetTokenInformation) ask_token_{
      [this](HANDLE, TOKEN_INFORMATION_CLASS, void* answer, DWORD, DWORD*) -> BOOL {
        Note(L"ask token");
        *static_cast<DWORD*>(answer) = 1;
        return TRUE;
      }};
  INTERPOSER(CloseHandle) close_{[this](HANDLE handle) -> BOOL {
    if (handle == kFolder) {
      folders_.pop_back();
      return TRUE;
    }
    if (handle != kToken) {
      return close_.Original()(handle);
    }
    Note(L"close token");
    return TRUE;
  }};
  INTERPOSER(GetFileInformationByHandleEx) information_{
      [](HANDLE, FILE_INFO_BY_HANDLE_CLASS, void* answer, DWORD) -> BOOL {
        static_cast<FILE_BASIC_INFO*>(answer)->FileAttributes = FILE_ATTRIBUTE_DIRECTORY;
        return TRUE;
      }};
  // What was opened last lies where its name says.
  INTERPOSER(GetFinalPathNameByHandleW) final_path_{
      [this](HANDLE, wchar_t* buffer, DWORD units, DWORD) -> DWORD {
        const std::wstring place = L"\\Device\\" + folders_.back();
        return static_cast<DWORD>(place.copy(buffer, units));
      }};
  INTERPOSER(RegOpenKeyExW) open_key_{
      [this](HKEY, const wchar_t* path, DWORD, REGSAM, HKEY*) -> LSTATUS {
        Note(L"open key " + std::wstring(path));
        return ERROR_FILE_NOT_FOUND;
      }};
  INTERPOSER(GetUserPreferredUILanguages) languages_{
      [this](DWORD, ULONG*, wchar_t*, ULONG*) -> BOOL {
        Note(L"languages");
        return FALSE;
      }};
  INTERPOSER(CreateFileW) open_file_{[this](const wchar_t* path, DWORD, DWORD, SECURITY_ATTRIBUTES*,
                                            DWORD, DWORD, HANDLE) -> HANDLE {
    Note(L"open " + nhupdate::WithoutExtendedPrefix(path));
    if (effects_.back().starts_with(L"open Q:\\Data")) {
      folders_.push_back(path);
      return kFolder;
    }
    ::SetLastError(ERROR_FILE_NOT_FOUND);
    return INVALID_HANDLE_VALUE;
  }};
  FakeLogLibrary library_;
};

// Of a start from this folder.
std::vector<std::wstring> EffectsIn(const std::wstring& module_folder) {
  const std::wstring texts = module_folder + L"\\Config\\NHUpdateManager.Default.json";
  return {L"known folder",
          L"create Q:\\Data\\Corvane",
          L"open Q:\\Data\\Corvane",
          L"open Q:\\Data\\",
          L"create Q:\\Data\\Corvane\\NimbaSoftware",
          L"open Q:\\Data\\Corvane\\NimbaSoftware",
          L"open Q:\\Data\\",
          L"create Q:\\Data\\Corvane\\NimbaSoftware\\NimbaHub",
          L"open Q:\\Data\\Corvane\\NimbaSoftware\\NimbaHub",
          L"open Q:\\Data\\",
          L"create Q:\\Data\\Corvane\\NimbaSoftware\\NimbaHub\\Log",
          L"Load " + module_folder + L"\\NSWLogDynamic64U.dll",
          L"Resolve Start",
          L"Resolve Stop",
          L"Resolve Flush",
          L"Resolve WriteLog",
          L"Start 1.0.0|" + module_folder +
              L"\\LogConfig.ini|Q:\\Data\\Corvane\\NimbaSoftware\\NimbaHub\\Log",
          L"open token",
          L"ask token",
          L"close token",
          L"WriteLog 2|NHUpdateManager|Process elevated.",
          L"open key SOFTWARE\\Valve\\Steam",
          L"WriteLog 2|NHUpdateManager|Steam language setting not found.",
          L"languages",
          L"WriteLog 2|NHUpdateManager|Use default language.",
          L"WriteLog 2|NHUpdateManager|Load strings from " + texts,
          L"open " + texts,
          L"WriteLog 4|NHUpdateManager|Fail to open string file : " + texts};
}

TEST_F(ManagerStartEffectsTest, ComeInAFixedOrder) {
  CManagerCenter manager;

  EXPECT_EQ(manager.Initialize(), 0);

  EXPECT_EQ(effects_, EffectsIn(L"Q:\\A\\B\\M"));
}

TEST_F(ManagerStartEffectsTest, FollowAPathThatIsCutOffAt259Characters) {
  for (const std::size_t length : {258U, 259U, 260U, 261U, 275U, 280U, 400U, 5000U}) {
    executable_ = L"Q:\\A\\B\\M\\NHUpdateManager.exe";
    executable_.insert(8, length - executable_.size(), L'x');
    effects_.clear();
    CManagerCenter manager;

    EXPECT_EQ(manager.Initialize(), 0) << length;

    EXPECT_EQ(effects_, EffectsIn(ParentFolder(executable_.substr(0, 259)))) << length;
  }
}

TEST_F(ManagerStartEffectsTest, StayInTheDrivesRootWithoutAPath) {
  executable_ = L"";
  CManagerCenter manager;

  EXPECT_EQ(manager.Initialize(), 0);

  EXPECT_EQ(effects_, EffectsIn(L""));
}

}  // namespace
}  // namespace nhupdate_test
