#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CollectEmptyFoldersTest : public testing::Test {
 protected:
  CollectEmptyFoldersTest() {
    product_.Start();
    product_.ForgetRecords();
    CreateFolders(folder_);
  }

  int Collect() { return product_.Manager().CollectEmptyFolders(folder_); }

  InstalledProduct product_;
  const std::wstring folder_ = product_.Root() + L"\\top";
};

TEST_F(CollectEmptyFoldersTest, ListsNestedEmptyFoldersTheDeepestFirst) {
  CreateFolders(folder_ + L"\\a\\b\\c");
  CreateFolders(folder_ + L"\\a\\d");
  CreateFolders(folder_ + L"\\e");

  EXPECT_EQ(Collect(), 1);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Remove empty folder : {root}\\top\\a\\b\\c",
                                                 L"2|Remove empty folder : {root}\\top\\a\\b",
                                                 L"2|Remove empty folder : {root}\\top\\a\\d",
                                                 L"2|Remove empty folder : {root}\\top\\a",
                                                 L"2|Remove empty folder : {root}\\top\\e"));
}

TEST_F(CollectEmptyFoldersTest, OnlyListsAndDeletesNothing) {
  CreateFolders(folder_ + L"\\a\\b");

  EXPECT_EQ(Collect(), 1);

  EXPECT_THAT(ListTree(folder_), ElementsAre(L"a\\", L"a\\b\\"));
}

TEST_F(CollectEmptyFoldersTest, DoesNotTakeAFolderForEmptyOfWhichOnlyAPartWasSeen) {
  WriteFileBytes(folder_ + L"\\full\\file", "x");
  FakeListing listing;
  listing.BreakOff(folder_ + L"\\full", ERROR_NETNAME_DELETED);

  EXPECT_EQ(Collect(), 0);

  EXPECT_THAT(product_.Transcript(), IsEmpty());
}

TEST_F(CollectEmptyFoldersTest, NeverListsTheFolderItself) {
  EXPECT_EQ(Collect(), 1);

  EXPECT_THAT(product_.Transcript(), IsEmpty());
}

TEST_F(CollectEmptyFoldersTest, PassesOverFoldersWithAFileAtAnyDepthButNotTheirEmptySiblings) {
  CreateFolders(folder_ + L"\\a\\empty");
  WriteFileBytes(folder_ + L"\\a\\full\\deep\\file", "");
  CreateFolders(folder_ + L"\\z");

  EXPECT_EQ(Collect(), 0);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Remove empty folder : {root}\\top\\a\\empty",
                                                 L"2|Remove empty folder : {root}\\top\\z"));
}

TEST_F(CollectEmptyFoldersTest, GoesOnAfterAFile) {
  WriteFileBytes(folder_ + L"\\a file", "x");
  CreateFolders(folder_ + L"\\b");

  EXPECT_EQ(Collect(), 0);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Remove empty folder : {root}\\top\\b"));
}

TEST_F(CollectEmptyFoldersTest, CountsFilesOfAllKinds) {
  const DWORD kAttributes[] = {FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM,
                               FILE_ATTRIBUTE_READONLY,
                               FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM};
  for (const DWORD attributes : kAttributes) {
    WriteFileBytes(folder_ + L"\\a\\file", "");
    FakeListing listing;
    listing.Disguise(folder_ + L"\\a\\file", attributes, 0);

    EXPECT_EQ(Collect(), 0) << attributes;
  }
  EXPECT_THAT(product_.Transcript(), IsEmpty());
}

TEST_F(CollectEmptyFoldersTest, LogsAPercentSignAsItIs) {
  CreateFolders(folder_ + L"\\%s%n");

  EXPECT_EQ(Collect(), 1);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Remove empty folder : {root}\\top\\%s%n"));
}

TEST_F(CollectEmptyFoldersTest, TakesAMissingFolderForEmpty) {
  EXPECT_EQ(product_.Manager().CollectEmptyFolders(product_.Root() + L"\\none"), 1);

  EXPECT_THAT(product_.Transcript(), IsEmpty());
}

// As long as it can't be listed it can't be emptied either, and so stays.
TEST_F(CollectEmptyFoldersTest, TakesAFolderThatCannotBeListedForEmpty) {
  WriteFileBytes(folder_ + L"\\secret\\file", "x");
  FakeListing listing;
  listing.Forbid(folder_ + L"\\secret", ERROR_ACCESS_DENIED);

  EXPECT_EQ(Collect(), 1);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Remove empty folder : {root}\\top\\secret"));
  EXPECT_EQ(product_.Manager().DeleteFolderTree(folder_ + L"\\secret"), 0);
  EXPECT_TRUE(nhupdate::Exists(folder_ + L"\\secret\\file"));
}

// The removal doesn't stop at empty folders: it deletes what it finds by then.
TEST_F(CollectEmptyFoldersTest, CostsAFolderItsContentWhenOnlyTheScanCouldNotListIt) {
  WriteFileBytes(folder_ + L"\\secret\\file", "x");
  {
    FakeListing listing;
    listing.Forbid(folder_ + L"\\secret", ERROR_SHARING_VIOLATION);
    EXPECT_EQ(Collect(), 1);
  }

  EXPECT_NE(product_.Manager().DeleteFolderTree(folder_ + L"\\secret"), 0);

  EXPECT_FALSE(nhupdate::Exists(folder_ + L"\\secret"));
}

TEST_F(CollectEmptyFoldersTest, CountsALinkAsContentAndDoesNotLookBehindIt) {
  constexpr DWORD kTags[] = {IO_REPARSE_TAG_MOUNT_POINT, IO_REPARSE_TAG_SYMLINK,
                             0};
  for (const DWORD tag : kTags) {
    CreateFolders(folder_ + L"\\link\\behind");
    FakeListing listing;
    listing.Disguise(folder_ + L"\\link", FILE_ATTRIBUTE_REPARSE_POINT, tag);

    EXPECT_EQ(Collect(), 0) << tag;

    EXPECT_THAT(listing.Patterns(), ElementsAre(folder_ + L"\\*.*")) << tag;
  }
  EXPECT_THAT(product_.Transcript(), IsEmpty());
}

TEST_F(CollectEmptyFoldersTest, TakesACloudPlaceholderForAnOrdinaryFolder) {
  CreateFolders(folder_ + L"\\cloud\\inner");
  FakeListing listing;
  listing.Disguise(folder_ + L"\\cloud", FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_CLOUD);

  EXPECT_EQ(Collect(), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Remove empty folder : {root}\\top\\cloud\\inner",
                          L"2|Remove empty folder : {root}\\top\\cloud"));
}

// A reparse tag without the attribute is a left-over of the buffer.
TEST_F(CollectEmptyFoldersTest, BelievesAReparseTagOnlyWithItsAttribute) {
  CreateFolders(folder_ + L"\\plain");
  FakeListing listing;
  listing.Disguise(folder_ + L"\\plain", 0, IO_REPARSE_TAG_MOUNT_POINT);

  EXPECT_EQ(Collect(), 1);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Remove empty folder : {root}\\top\\plain"));
}

}  // namespace
}  // namespace nhupdate_test
