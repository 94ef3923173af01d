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

class MissingTurnMutexTest : public testing::Test {
 protected:
  // Files are rotated all the same.
  void StartAndRotate() {
    EXPECT_EQ(library_.Start(place_.Settings(), place_.Folder()), 0);
    library_.Write(kFullFile);
    library_.Write(L"next");

    EXPECT_THAT(ReadTexts(place_.RotatedFile(1)), ElementsAre(kFullFileText));
    EXPECT_THAT(ReadTexts(place_.CurrentFile()), ElementsAre("next"));
  }

  const LogPlace place_{kSmallFiles};
  LoadedLogLibrary library_;
};

TEST_F(MissingTurnMutexTest, IsDoneWithoutWhenItCantBeMade) {
  const Interposer<decltype(::CreateMutexExW)> create(
      library_.Module(), "CreateMutexExW",
      [](SECURITY_ATTRIBUTES*, const wchar_t*, DWORD, DWORD) -> HANDLE {
        ::SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
      });

  StartAndRotate();

  EXPECT_EQ(create.Calls(), 1);
}

TEST_F(MissingTurnMutexTest, IsNotMadeWithoutItsAccessList) {
  const Interposer<decltype(::ConvertStringSecurityDescriptorToSecurityDescriptorW)> convert(
      library_.Module(), "ConvertStringSecurityDescriptorToSecurityDescriptorW",
      [](const wchar_t*, DWORD, PSECURITY_DESCRIPTOR*, ULONG*) -> BOOL {
        ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return FALSE;
      });
  const Interposer<decltype(::CreateMutexExW)> create(
      library_.Module(), "CreateMutexExW",
      [](SECURITY_ATTRIBUTES*, const wchar_t*, DWORD, DWORD) -> HANDLE { return nullptr; });

  StartAndRotate();

  EXPECT_EQ(convert.Calls(), 1);
  EXPECT_EQ(create.Calls(), 0);
}

}  // namespace
}  // namespace nhupdate_test
