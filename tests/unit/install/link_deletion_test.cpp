// Links are deleted, what is behind them is not. Wine can't make junctions or symbolic links, so
// ordinary folders are shown as links here; what is in them stands for what is behind the link.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/existence.h"
#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;

class LinkDeletionTest : public testing::TestWithParam<DWORD> {
 protected:
  LinkDeletionTest() {
    product_.Start();
    WriteFileBytes(folder_ + L"\\a", "A");
    WriteFileBytes(folder_ + L"\\link\\inner\\behind", "B");
  }

  InstalledProduct product_;
  const std::wstring folder_ = product_.Root() + L"\\top";
  const std::wstring link_ = folder_ + L"\\link";
  std::vector<std::wstring> removed_;
  INTERPOSER(RemoveDirectoryW) remove_{[this](const wchar_t* folder) -> BOOL {
    removed_.push_back(folder);
    return TRUE;
  }};
};

TEST_P(LinkDeletionTest, RemovesALinkInTheFolderWithoutLookingBehindIt) {
  FakeListing listing;
  listing.Disguise(link_, FILE_ATTRIBUTE_REPARSE_POINT, GetParam());

  EXPECT_NE(product_.Manager().DeleteFolderTree(folder_), 0);

  EXPECT_THAT(listing.Patterns(), ElementsAre(folder_ + L"/*.*"));
  EXPECT_THAT(removed_, ElementsAre(link_, folder_));
  EXPECT_FALSE(Exists(folder_ + L"\\a"));
  EXPECT_TRUE(Exists(link_ + L"\\inner\\behind"));
}

TEST_P(LinkDeletionTest, RemovesTheFolderItselfWhenItIsALink) {
  FakeListing listing;
  listing.Disguise(link_, FILE_ATTRIBUTE_REPARSE_POINT, GetParam());

  EXPECT_NE(product_.Manager().DeleteFolderTree(link_), 0);

  EXPECT_TRUE(listing.Patterns().empty());
  EXPECT_THAT(removed_, ElementsAre(link_));
  EXPECT_TRUE(Exists(link_ + L"\\inner\\behind"));
}

INSTANTIATE_TEST_SUITE_P(OfBothKinds, LinkDeletionTest,
                         testing::Values(IO_REPARSE_TAG_MOUNT_POINT, IO_REPARSE_TAG_SYMLINK));

// Somebody put a link in the place of {base}\Updater.
TEST_F(LinkDeletionTest, DeletesNothingThroughALinkFurtherUpInTheProduct) {
  const std::wstring inside = product_.Base() + L"\\Updater\\App\\Sub";
  WriteFileBytes(inside + L"\\behind", "B");
  FakeListing listing;
  listing.LeadElsewhere(inside, L"\\Device\\HarddiskVolume1\\elsewhere\\App\\Sub");

  EXPECT_NE(product_.Manager().DeleteFolderTree(inside), 0);

  EXPECT_TRUE(listing.Patterns().empty());
  EXPECT_THAT(removed_, ElementsAre(inside));
  EXPECT_TRUE(Exists(inside + L"\\behind"));
}

TEST_F(LinkDeletionTest, EmptiesACloudPlaceholderLikeAnyFolder) {
  FakeListing listing;
  listing.Disguise(link_, FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_CLOUD);

  EXPECT_NE(product_.Manager().DeleteFolderTree(folder_), 0);

  EXPECT_THAT(removed_, ElementsAre(link_ + L"\\inner", link_, folder_));
  EXPECT_FALSE(Exists(link_ + L"\\inner\\behind"));
}

TEST_F(LinkDeletionTest, DeletesALinkToAFileAsAFile) {
  WriteFileBytes(folder_ + L"\\file link", "L");
  FakeListing listing;
  listing.Disguise(folder_ + L"\\file link", FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_SYMLINK);

  EXPECT_NE(product_.Manager().DeleteFolderTree(folder_), 0);

  EXPECT_FALSE(Exists(folder_ + L"\\file link"));
}

}  // namespace
}  // namespace nhupdate_test
