// Nothing is deleted in a folder that isn't held in its place, or can't be looked into.

#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"
#include "tests/support/open_handles.h"
#include "tests/unit/install/delete_folder_tree_test.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;

using SafeFolderDeletionTest = DeleteFolderTreeTest;

TEST_F(SafeFolderDeletionTest, RemovesAnEmptyFolderThatCannotBeListed) {
  FakeListing listing;
  listing.Forbid(folder_, ERROR_ACCESS_DENIED);

  EXPECT_NE(Delete(), 0);

  EXPECT_FALSE(Exists(folder_));
}

TEST_F(SafeFolderDeletionTest, LeavesTheContentOfAFolderThatCannotBeOpened) {
  WriteFileBytes(folder_ + L"\\file", "x");
  INTERPOSER(CreateFileW) create_file(
      [](const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE) {
        ::SetLastError(ERROR_SHARING_VIOLATION);
        return INVALID_HANDLE_VALUE;
      });

  EXPECT_EQ(Delete(), 0);

  EXPECT_TRUE(Exists(folder_ + L"\\file"));
}

// The arguments are looked at: Wine, unlike Windows, keeps every folder in place that is listed.
TEST_F(SafeFolderDeletionTest, HoldsTheFolderInItsPlaceWhileItsContentIsDeleted) {
  const std::wstring inner = folder_ + L"\\inner";
  WriteFileBytes(inner + L"\\file", "x");
  HANDLE held = nullptr;
  INTERPOSER(CreateFileW) create_file([&](const wchar_t* path, DWORD access, DWORD sharing,
                                          SECURITY_ATTRIBUTES* security, DWORD disposition,
                                          DWORD flags, HANDLE model) {
    const HANDLE file =
        create_file.Original()(path, access, sharing, security, disposition, flags, model);
    if (path == inner) {
      EXPECT_EQ(access, static_cast<DWORD>(FILE_LIST_DIRECTORY));
      EXPECT_EQ(sharing & FILE_SHARE_DELETE, 0u);
      EXPECT_NE(flags & FILE_FLAG_OPEN_REPARSE_POINT, 0u);
      held = file;
    }
    return file;
  });
  INTERPOSER(CloseHandle) close([&](HANDLE handle) {
    held = handle == held ? nullptr : held;
    return close.Original()(handle);
  });
  INTERPOSER(DeleteFileW) delete_file([&](const wchar_t* file) {
    EXPECT_NE(held, nullptr);
    return delete_file.Original()(file);
  });

  EXPECT_NE(Delete(), 0);

  EXPECT_EQ(delete_file.Calls(), 1);
  EXPECT_EQ(held, nullptr);
}

TEST_F(SafeFolderDeletionTest, LeavesNoHandlesBehind) {
  WriteFileBytes(folder_ + L"\\a\\b\\c", "x");
  const int handles_before = CountOpenHandles();

  EXPECT_NE(Delete(), 0);

  EXPECT_EQ(CountOpenHandles(), handles_before);
}

}  // namespace
}  // namespace nhupdate_test
