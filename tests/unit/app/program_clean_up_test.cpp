// After which workflows, and in which place, the updater's configuration is deleted.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/existence.h"
#include "base/windows.h"
#include "tests/support/captured_console.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"

// These need <windows.h> first.
#include <psapi.h>
#include <shellapi.h>

namespace nhupdate {
namespace {

using nhupdate_test::CapturedConsole;
using nhupdate_test::InstalledProduct;
using nhupdate_test::Interposer;
using nhupdate_test::WriteFileBytes;
using testing::Contains;

constexpr wchar_t kStagedModule[] = L"\\Updater\\App\\NHUpdateManager";

// A system on which nothing really happens: child programs "end" with the given codes.
class ProgramCleanUpTest : public testing::Test {
 protected:
  static std::wstring InstalledConfig(const InstalledProduct& product) {
    return product.Base() + L"\\Updater\\Config\\ut.ini";
  }
  // Where a staged copy would look if it took itself for the installed one.
  static std::wstring MistakenConfig(const InstalledProduct& product) {
    return product.App() + L"\\Updater\\Config\\ut.ini";
  }
  static void AddUpdater(const InstalledProduct& product) {
    WriteFileBytes(product.Base() + L"\\Updater\\Updater.exe", "not a real program");
  }

  std::vector<DWORD> exit_codes_;
  std::size_t next_exit_code_ = 0;
  bool can_copy_ = true;

  CapturedConsole console_;
  Interposer<decltype(::ShellExecuteExW)> execute_{
      "ShellExecuteExW", [](SHELLEXECUTEINFOW* execution) -> BOOL {
        execution->hProcess = ::CreateEventW(nullptr, TRUE, TRUE, nullptr);
        return TRUE;
      }};
  Interposer<decltype(::GetExitCodeProcess)> exit_code_{
      "GetExitCodeProcess", [this](HANDLE, DWORD* exit_code) -> BOOL {
        *exit_code = exit_codes_.at(next_exit_code_++);
        return TRUE;
      }};
  Interposer<decltype(::ShellExecuteW)> execute_tool_{
      "ShellExecuteW",
      [](HWND, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, int) -> HINSTANCE {
        return reinterpret_cast<HINSTANCE>(std::uintptr_t{42});
      }};
  Interposer<decltype(::K32EnumProcesses)> processes_{
      "K32EnumProcesses", [](DWORD*, DWORD, DWORD*) -> BOOL { return FALSE; }};
  Interposer<decltype(::RegCreateKeyExW)> create_key_{
      "RegCreateKeyExW",
      [](HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM, const SECURITY_ATTRIBUTES*, HKEY*,
         DWORD*) -> LSTATUS { return ERROR_ACCESS_DENIED; }};
  Interposer<decltype(::CopyFileW)> copy_{
      "CopyFileW", [this](const wchar_t* source, const wchar_t* target, BOOL fails) -> BOOL {
        if (std::wstring(source).ends_with(L".dll") || can_copy_) {
          return copy_.Original()(source, target, fails);
        }
        ::SetLastError(ERROR_DISK_FULL);
        return FALSE;
      }};
  Interposer<decltype(::Sleep)> sleep_{"Sleep", [](DWORD) {}};
  Interposer<decltype(::MessageBoxW)> box_{
      "MessageBoxW", [](HWND, const wchar_t*, const wchar_t*, UINT) -> int { return IDOK; }};
};

TEST_F(ProgramCleanUpTest, FollowsAFailureForWantOfElevationInUpdateModesOnly) {
  struct Case {
    const wchar_t* arguments;
    bool is_deleted;
  };
  for (const Case& c :
       {Case{L"-update", true}, Case{L"-final_update", true}, Case{L"-install", false}}) {
    InstalledProduct product({.elevated = false});
    WriteFileBytes(InstalledConfig(product), "x");

    EXPECT_EQ(product.RunProgram(c.arguments), 10) << testing::PrintToString(c.arguments);

    EXPECT_EQ(Exists(InstalledConfig(product)), !c.is_deleted)
        << testing::PrintToString(c.arguments);
  }
}

TEST_F(ProgramCleanUpTest, FindsTheConfigurationFromTheStagedCopy) {
  InstalledProduct product({.elevated = false, .module = kStagedModule});
  WriteFileBytes(InstalledConfig(product), "x");
  WriteFileBytes(MistakenConfig(product), "x");

  EXPECT_EQ(product.RunProgram(L"-self_update"), 10);

  EXPECT_FALSE(Exists(InstalledConfig(product)));
  EXPECT_TRUE(Exists(MistakenConfig(product)));
  EXPECT_THAT(product.Transcript(), Contains(L"2|Updater config file delete ok : "
                                             L"{root}\\Nimba Hub\\Updater\\Config\\ut.ini"));
}

TEST_F(ProgramCleanUpTest, TakesAnUpdateForTheInstalledCopyWhereverItRuns) {
  InstalledProduct product({.elevated = false, .module = kStagedModule});
  WriteFileBytes(InstalledConfig(product), "x");
  WriteFileBytes(MistakenConfig(product), "x");

  EXPECT_EQ(product.RunProgram(L"-update"), 10);

  EXPECT_TRUE(Exists(InstalledConfig(product)));
  EXPECT_FALSE(Exists(MistakenConfig(product)));
}

TEST_F(ProgramCleanUpTest, NeverFollowsADownload) {
  struct Case {
    bool has_updater;
    DWORD exit_code;
    int result;
  };
  for (const Case& c :
       {Case{true, 0, 12}, Case{true, 1, 11}, Case{true, 99, 13}, Case{false, 0, 14}}) {
    InstalledProduct product;
    WriteFileBytes(InstalledConfig(product), "x");
    if (c.has_updater) {
      AddUpdater(product);
    }
    exit_codes_ = {c.exit_code};
    next_exit_code_ = 0;

    EXPECT_EQ(product.RunProgram(L"-download"), c.result);

    EXPECT_TRUE(Exists(InstalledConfig(product))) << c.result;
  }
}

TEST_F(ProgramCleanUpTest, DoesNotFollowASuccessfulUpdate) {
  InstalledProduct product;
  AddUpdater(product);
  WriteFileBytes(product.App() + L"\\NHUpdateManager\\NHUpdateManager.exe", "not a real program");
  WriteFileBytes(InstalledConfig(product), "x");
  exit_codes_ = {1, 0};  // no new updater, then a successful update

  EXPECT_EQ(product.RunProgram(L"-update"), 0);

  EXPECT_TRUE(Exists(InstalledConfig(product)));
  EXPECT_EQ(product.Transcript().back(), L"2|Return 0");
}

TEST_F(ProgramCleanUpTest, FollowsAnUpdateThatTheUpdaterFailed) {
  InstalledProduct product;
  AddUpdater(product);
  WriteFileBytes(InstalledConfig(product), "x");
  exit_codes_ = {1, 5};

  EXPECT_EQ(product.RunProgram(L"-update"), 13);

  EXPECT_FALSE(Exists(InstalledConfig(product)));
  EXPECT_EQ(product.Transcript().back(), L"2|Return 13");
}

TEST_F(ProgramCleanUpTest, DoesNotFollowASuccessfulSelfUpdate) {
  InstalledProduct product({.module = kStagedModule});
  WriteFileBytes(product.ExecutablePath(), "not a real program");
  WriteFileBytes(product.Base() + L"\\NHUpdateManager\\NHUpdateManager.exe", "an old one");
  WriteFileBytes(InstalledConfig(product), "x");

  EXPECT_EQ(product.RunProgram(L"-self_update"), 0);

  EXPECT_TRUE(Exists(InstalledConfig(product)));
}

TEST_F(ProgramCleanUpTest, FollowsASelfUpdateThatCannotCopy) {
  InstalledProduct product({.module = kStagedModule});
  WriteFileBytes(product.ExecutablePath(), "not a real program");
  WriteFileBytes(InstalledConfig(product), "x");
  WriteFileBytes(MistakenConfig(product), "x");
  can_copy_ = false;

  EXPECT_EQ(product.RunProgram(L"-self_update"), 16);

  EXPECT_FALSE(Exists(InstalledConfig(product)));
  EXPECT_TRUE(Exists(MistakenConfig(product)));
}

TEST_F(ProgramCleanUpTest, DoesNotFollowASuccessfulFinalUpdate) {
  InstalledProduct product;
  WriteFileBytes(product.App() + L"\\new.txt", "new");
  WriteFileBytes(InstalledConfig(product), "x");

  EXPECT_EQ(product.RunProgram(L"-final_update"), 0);

  EXPECT_TRUE(Exists(InstalledConfig(product)));
  EXPECT_EQ(nhupdate_test::ReadFileBytes(product.Base() + L"\\new.txt"), "new");
  EXPECT_EQ(product.Transcript().back(), L"2|Return 0");
}

TEST_F(ProgramCleanUpTest, FollowsAFinalUpdateThatCannotCopy) {
  InstalledProduct product;
  WriteFileBytes(product.App() + L"\\new.txt", "new");
  WriteFileBytes(InstalledConfig(product), "x");
  can_copy_ = false;

  EXPECT_EQ(product.RunProgram(L"-final_update"), 2);

  EXPECT_FALSE(Exists(InstalledConfig(product)));
}

TEST_F(ProgramCleanUpTest, DoesNotFollowAnInstallationThatCannotCopy) {
  InstalledProduct product;
  WriteFileBytes(product.App() + L"\\new.txt", "new");
  WriteFileBytes(InstalledConfig(product), "x");
  can_copy_ = false;

  EXPECT_EQ(product.RunProgram(L"-install"), 2);

  EXPECT_TRUE(Exists(InstalledConfig(product)));
}

TEST_F(ProgramCleanUpTest, LeavesTheResultWhenThereIsNoConfiguration) {
  InstalledProduct product({.elevated = false});

  EXPECT_EQ(product.RunProgram(L"-update"), 10);

  EXPECT_THAT(product.Transcript(), Contains(L"4|Updater config file note found : "
                                             L"{root}\\Nimba Hub\\Updater\\Config\\ut.ini"));
}

TEST_F(ProgramCleanUpTest, LeavesTheResultWhenTheConfigurationCannotBeDeleted) {
  InstalledProduct product({.elevated = false});
  WriteFileBytes(InstalledConfig(product), "x");
  Interposer<decltype(::DeleteFileW)> delete_file("DeleteFileW", [&](const wchar_t* path) -> BOOL {
    EXPECT_EQ(path, InstalledConfig(product));
    ::SetLastError(ERROR_SHARING_VIOLATION);
    return FALSE;
  });

  EXPECT_EQ(product.RunProgram(L"-update"), 10);

  EXPECT_EQ(delete_file.Calls(), 1);
  EXPECT_THAT(product.Transcript(), Contains(L"4|Updater config file delete fail (32) : "
                                             L"{root}\\Nimba Hub\\Updater\\Config\\ut.ini"));
}

}  // namespace
}  // namespace nhupdate
