// How the mutex is made that all writers share.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/windows.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/interposer.h"

// This needs <windows.h> first.
#include <sddl.h>

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::wstring AccessText(void* descriptor) {
  wchar_t* text = nullptr;
  if (!::ConvertSecurityDescriptorToStringSecurityDescriptorW(
          descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr)) {
    return L"none";
  }
  const std::wstring copy = text;
  ::LocalFree(text);
  return copy;
}

TEST(TurnMutexTest, IsOpenToEveryoneWhoIsLoggedOnAndNotInherited) {
  const LogPlace place;
  LoadedLogLibrary library;
  std::wstring name;
  std::wstring access_list;
  DWORD wanted_access = 0;
  BOOL is_inherited = TRUE;
  {
    Interposer<decltype(::CreateMutexExW)> create(
        library.Module(), "CreateMutexExW",
        [&](SECURITY_ATTRIBUTES* attributes, const wchar_t* mutex, DWORD flags, DWORD access) {
          name = mutex;
          access_list = AccessText(attributes->lpSecurityDescriptor);
          is_inherited = attributes->bInheritHandle;
          wanted_access = access;
          return create.Original()(attributes, mutex, flags, access);
        });
    ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);
  }

  EXPECT_EQ(name, L"Global\\NHUpdateManager.log");
  EXPECT_THAT(access_list, HasSubstr(L"(A;;0x100001;;;AU)"));
  EXPECT_THAT(access_list, HasSubstr(L"(A;;GA;;;SY)"));
  EXPECT_THAT(access_list, HasSubstr(L"(A;;GA;;;BA)"));
  EXPECT_EQ(wanted_access, static_cast<DWORD>(SYNCHRONIZE | MUTEX_MODIFY_STATE));
  EXPECT_FALSE(is_inherited);
}

TEST(TurnMutexTest, IsDoneWithoutWhenTheMutexCantBeMade) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  int result = 1;
  {
    Interposer<decltype(::CreateMutexExW)> create(
        library.Module(), "CreateMutexExW",
        [](SECURITY_ATTRIBUTES*, const wchar_t*, DWORD, DWORD) -> HANDLE {
          ::SetLastError(ERROR_ACCESS_DENIED);
          return nullptr;
        });
    result = library.Start(place.Settings(), place.Folder());
  }
  library.Write(kFullFile);
  library.Write(L"next");

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(place.RotatedFile(1)), ElementsAre(kFullFileText));
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("next"));
}

TEST(TurnMutexTest, IsDoneWithoutWhenThereIsNoAccessListForTheMutex) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  int result = 1;
  int made = 0;
  {
    Interposer<decltype(::ConvertStringSecurityDescriptorToSecurityDescriptorW)> convert(
        library.Module(), "ConvertStringSecurityDescriptorToSecurityDescriptorW",
        [](const wchar_t*, DWORD, PSECURITY_DESCRIPTOR*, ULONG*) -> BOOL {
          ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
          return FALSE;
        });
    Interposer<decltype(::CreateMutexExW)> create(
        library.Module(), "CreateMutexExW",
        [&](SECURITY_ATTRIBUTES* attributes, const wchar_t* name, DWORD flags, DWORD access) {
          ++made;
          return create.Original()(attributes, name, flags, access);
        });
    result = library.Start(place.Settings(), place.Folder());
  }
  library.Write(kFullFile);
  library.Write(L"next");

  EXPECT_EQ(result, 0);
  EXPECT_EQ(made, 0);
  EXPECT_THAT(ReadTexts(place.RotatedFile(1)), ElementsAre(kFullFileText));
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("next"));
}

}  // namespace
}  // namespace nhupdate_test
