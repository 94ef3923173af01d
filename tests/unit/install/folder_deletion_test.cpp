#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/existence.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/support/open_handles.h"
#include "tests/unit/install/fake_listing.h"
#include "tests/unit/install/file_lock.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;
using testing::IsEmpty;

class DeleteFolderTreeTest : public testing::Test {
 protected:
  DeleteFolderTreeTest() {
    product_.Start();
    product_.ForgetRecords();
    CreateFolders(folder_);
  }

  int Delete() { return product_.Manager().DeleteFolderTree(folder_); }

  InstalledProduct product_;
  const std::wstring folder_ = product_.Root() + L"\\top";
};

TEST_F(DeleteFolderTreeTest, DeletesEverythingInSilence) {
  WriteFileBytes(folder_ + L"\\a", "A");
  WriteFileBytes(folder_ + L"\\b\\c\\d", "D");
  CreateFolders(folder_ + L"\\e\\f");
  WriteFileBytes(folder_ + L"\\%s \u65E5\u672C\\.g", "G");

  EXPECT_NE(Delete(), 0);

  EXPECT_FALSE(Exists(folder_));
  EXPECT_THAT(product_.Transcript(), IsEmpty());
}

TEST_F(DeleteFolderTreeTest, ListsWithAForwardSlash) {
  CreateFolders(folder_ + L"\\a");
  const FakeListing listing;

  EXPECT_NE(Delete(), 0);

  EXPECT_THAT(listing.Patterns(), ElementsAre(folder_ + L"/*.*", folder_ + L"\\a/*.*"));
}

TEST_F(DeleteFolderTreeTest, DeletesFilesOfAllAttributes) {
  const DWORD kAttributes[] = {FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN,
                               FILE_ATTRIBUTE_SYSTEM,
                               FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN};
  for (const DWORD attributes : kAttributes) {
    const std::wstring file = folder_ + L"\\inner\\" + std::to_wstring(attributes);
    WriteFileBytes(file, "x");
    ::SetFileAttributesW(file.c_str(), attributes);
  }

  EXPECT_NE(Delete(), 0);

  EXPECT_FALSE(Exists(folder_));
}

TEST_F(DeleteFolderTreeTest, ClearsTheReadOnlyAttributeAndNoOther) {
  WriteFileBytes(folder_ + L"\\file", "x");
  std::vector<DWORD> attributes_set;
  Interposer<decltype(::GetFileAttributesW)> get_attributes(
      "GetFileAttributesW", [](const wchar_t*) -> DWORD {
        return FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE;
      });
  Interposer<decltype(::SetFileAttributesW)> set_attributes(
      "SetFileAttributesW", [&](const wchar_t* path, DWORD attributes) -> BOOL {
        EXPECT_EQ(path, folder_ + L"\\file");
        attributes_set.push_back(attributes);
        return TRUE;
      });

  EXPECT_NE(Delete(), 0);

  EXPECT_THAT(attributes_set, ElementsAre(FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE));
}

TEST_F(DeleteFolderTreeTest, LeavesTheReadOnlyAttributeOfFoldersAlone) {
  CreateFolders(folder_ + L"\\read-only");
  FakeListing listing;
  listing.Disguise(folder_ + L"\\read-only", FILE_ATTRIBUTE_READONLY, 0);
  Interposer<decltype(::SetFileAttributesW)> set_attributes(
      "SetFileAttributesW", [](const wchar_t*, DWORD) -> BOOL { return TRUE; });

  EXPECT_NE(Delete(), 0);

  EXPECT_EQ(set_attributes.Calls(), 0);
}

TEST_F(DeleteFolderTreeTest, DeletesAllButAHeldFileAndTheFoldersAboveIt) {
  WriteFileBytes(folder_ + L"\\a", "A");
  WriteFileBytes(folder_ + L"\\b\\held", "H");
  WriteFileBytes(folder_ + L"\\b\\other", "O");
  WriteFileBytes(folder_ + L"\\c\\d", "D");
  FileLock lock(folder_ + L"\\b\\held");

  EXPECT_EQ(Delete(), 0);

  EXPECT_THAT(ListTree(folder_), ElementsAre(L"b\\", L"b\\held"));
  lock.Release();
  EXPECT_NE(Delete(), 0);
  EXPECT_FALSE(Exists(folder_));
}

TEST_F(DeleteFolderTreeTest, ReportsAMissingFolder) {
  EXPECT_EQ(product_.Manager().DeleteFolderTree(product_.Root() + L"\\none"), 0);
}

TEST_F(DeleteFolderTreeTest, LeavesAFileAlone) {
  WriteFileBytes(folder_ + L"\\file", "x");

  EXPECT_EQ(product_.Manager().DeleteFolderTree(folder_ + L"\\file"), 0);

  EXPECT_TRUE(Exists(folder_ + L"\\file"));
}

TEST_F(DeleteFolderTreeTest, RemovesAnEmptyFolderThatCannotBeListed) {
  FakeListing listing;
  listing.Forbid(folder_, ERROR_ACCESS_DENIED);

  EXPECT_NE(Delete(), 0);

  EXPECT_FALSE(Exists(folder_));
}

TEST_F(DeleteFolderTreeTest, LeavesTheContentOfAFolderThatCannotBeOpened) {
  WriteFileBytes(folder_ + L"\\file", "x");
  Interposer<decltype(::CreateFileW)> create_file(
      "CreateFileW", [](const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE) {
        ::SetLastError(ERROR_SHARING_VIOLATION);
        return INVALID_HANDLE_VALUE;
      });

  EXPECT_EQ(Delete(), 0);

  EXPECT_TRUE(Exists(folder_ + L"\\file"));
}

// The arguments are looked at: Wine, unlike Windows, keeps every folder in place that is listed.
TEST_F(DeleteFolderTreeTest, HoldsTheFolderInItsPlaceWhileItsContentIsDeleted) {
  const std::wstring inner = folder_ + L"\\inner";
  WriteFileBytes(inner + L"\\file", "x");
  HANDLE held = nullptr;
  Interposer<decltype(::CreateFileW)> create_file(
      "CreateFileW",
      [&](const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
          DWORD disposition, DWORD flags, HANDLE model) {
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
  Interposer<decltype(::CloseHandle)> close("CloseHandle", [&](HANDLE handle) {
    held = handle == held ? nullptr : held;
    return close.Original()(handle);
  });
  Interposer<decltype(::DeleteFileW)> delete_file("DeleteFileW", [&](const wchar_t* file) {
    EXPECT_NE(held, nullptr);
    return delete_file.Original()(file);
  });

  EXPECT_NE(Delete(), 0);

  EXPECT_EQ(delete_file.Calls(), 1);
  EXPECT_EQ(held, nullptr);
}

TEST_F(DeleteFolderTreeTest, LeavesNoHandlesBehind) {
  WriteFileBytes(folder_ + L"\\a\\b\\c", "x");
  const int handles_before = CountOpenHandles();

  EXPECT_NE(Delete(), 0);

  EXPECT_EQ(CountOpenHandles(), handles_before);
}

TEST_F(DeleteFolderTreeTest, PassesOnTheLastResultAsItIs) {
  Interposer<decltype(::RemoveDirectoryW)> remove("RemoveDirectoryW",
                                                  [](const wchar_t*) -> BOOL { return 5; });

  EXPECT_EQ(Delete(), 5);
}

}  // namespace
}  // namespace nhupdate_test
