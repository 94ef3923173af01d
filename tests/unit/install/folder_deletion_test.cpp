#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/existence.h"
#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"
#include "tests/support/interposer.h"
#include "tests/unit/install/delete_folder_tree_test.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;
using testing::IsEmpty;

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
  INTERPOSER(GetFileAttributesW) get_attributes([](const wchar_t*) -> DWORD {
    return FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE;
  });
  INTERPOSER(SetFileAttributesW) set_attributes([&](const wchar_t* path, DWORD attributes) -> BOOL {
    EXPECT_EQ(path, folder_ + L"\\file");
    attributes_set.push_back(attributes);
    return TRUE;
  });

  EXPECT_NE(Delete(), 0);

  EXPECT_THAT(attributes_set, ElementsAre(FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE));
}

TEST_F(DeleteFolderTreeTest, SetsNoAttributesWhereItDoesNotKnowThem) {
  WriteFileBytes(folder_ + L"\\file", "x");
  INTERPOSER(GetFileAttributesW) get_attributes([](const wchar_t*) -> DWORD {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_FILE_ATTRIBUTES;
  });
  INTERPOSER(SetFileAttributesW) set_attributes([](const wchar_t*, DWORD) -> BOOL { return TRUE; });

  EXPECT_NE(Delete(), 0);

  EXPECT_EQ(get_attributes.Calls(), 1);
  EXPECT_EQ(set_attributes.Calls(), 0);
  EXPECT_FALSE(Exists(folder_));
}

TEST_F(DeleteFolderTreeTest, LeavesTheReadOnlyAttributeOfFoldersAlone) {
  CreateFolders(folder_ + L"\\read-only");
  FakeListing listing;
  listing.Disguise(folder_ + L"\\read-only", FILE_ATTRIBUTE_READONLY, 0);
  INTERPOSER(SetFileAttributesW) set_attributes([](const wchar_t*, DWORD) -> BOOL { return TRUE; });

  EXPECT_NE(Delete(), 0);

  EXPECT_EQ(set_attributes.Calls(), 0);
}

TEST_F(DeleteFolderTreeTest, DeletesAllButAHeldFileAndTheFoldersAboveIt) {
  WriteFileBytes(folder_ + L"\\a", "A");
  WriteFileBytes(folder_ + L"\\b\\held", "H");
  WriteFileBytes(folder_ + L"\\b\\other", "O");
  WriteFileBytes(folder_ + L"\\c\\d", "D");
  HeldFile lock(folder_ + L"\\b\\held");

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

TEST_F(DeleteFolderTreeTest, PassesOnTheLastResultAsItIs) {
  INTERPOSER(RemoveDirectoryW) remove([](const wchar_t*) -> BOOL { return 5; });

  EXPECT_EQ(Delete(), 5);
}

}  // namespace
}  // namespace nhupdate_test
