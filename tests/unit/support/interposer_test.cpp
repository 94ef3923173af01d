#include "tests/support/interposer.h"

#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/support/files.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

TEST(InterposerTest, ReplacesTheFunctionUntilItIsDestroyed) {
  const ScratchFolder scratch;
  const std::wstring folder = scratch.Path() + L"\\folder";
  {
    Interposer<decltype(::CreateDirectoryW)> create(
        "CreateDirectoryW", [](const wchar_t*, SECURITY_ATTRIBUTES*) -> BOOL {
          ::SetLastError(ERROR_DISK_FULL);
          return FALSE;
        });

    EXPECT_FALSE(::CreateDirectoryW(folder.c_str(), nullptr));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_DISK_FULL));
    EXPECT_EQ(create.Calls(), 1);
  }
  EXPECT_FALSE(nhupdate::Exists(folder));

  EXPECT_TRUE(::CreateDirectoryW(folder.c_str(), nullptr));
}

TEST(InterposerTest, PassesCallsOnToTheOriginal) {
  const ScratchFolder scratch;
  const std::wstring folder = scratch.Path() + L"\\folder";
  Interposer<decltype(::CreateDirectoryW)> create(
      "CreateDirectoryW", [&](const wchar_t* path, SECURITY_ATTRIBUTES* attributes) {
        return create.Original()(path, attributes);
      });

  EXPECT_TRUE(::CreateDirectoryW(folder.c_str(), nullptr));

  EXPECT_TRUE(nhupdate::Exists(folder));
}

TEST(InterposerTest, KeepsFunctionsOfTheSameSignatureApart) {
  Interposer<decltype(::DeleteFileW)> delete_file("DeleteFileW",
                                                  [](const wchar_t*) -> BOOL { return 11; });
  Interposer<decltype(::RemoveDirectoryW)> remove_directory(
      "RemoveDirectoryW", [](const wchar_t*) -> BOOL { return 22; });

  EXPECT_EQ(::DeleteFileW(L"a"), 11);
  EXPECT_EQ(::RemoveDirectoryW(L"a"), 22);
}

TEST(InterposerTest, ReachesTheCallsOfTheProgramsOwnObjects) {
  const ScratchFolder scratch;
  WriteFileBytes(scratch.Path() + L"\\file", "x");
  Interposer<decltype(::FindFirstFileW)> find("FindFirstFileW",
                                              [](const wchar_t*, WIN32_FIND_DATAW*) -> HANDLE {
                                                ::SetLastError(ERROR_ACCESS_DENIED);
                                                return INVALID_HANDLE_VALUE;
                                              });

  EXPECT_TRUE(ListTree(scratch.Path()).empty());
  EXPECT_EQ(find.Calls(), 1);
}

TEST(InterposerDeathTest, RefusesAFunctionThatIsNotImported) {
  EXPECT_DEATH(std::ignore = FindImportSlot("NoSuchFunctionW"), "does not import NoSuchFunctionW");
}

}  // namespace
}  // namespace nhupdate_test
