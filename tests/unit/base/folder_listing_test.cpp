#include "base/folder_listing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

using nhupdate::CFolderListing;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::vector<std::wstring> Names(CFolderListing& listing) {
  std::vector<std::wstring> names;
  while (listing.Next()) {
    names.push_back(listing.Name());
  }
  return names;
}

TEST(FolderListingTest, GivesFilesAndFoldersOfOneFolder) {
  const ScratchFolder scratch;
  WriteFileBytes(scratch.Path() + L"\\file \u00FC", "x");
  WriteFileBytes(scratch.Path() + L"\\folder\\below", "x");

  std::vector<std::pair<std::wstring, bool>> entries;
  CFolderListing listing(scratch.Path());
  while (listing.Next()) {
    entries.emplace_back(listing.Name(), listing.IsFolder());
    EXPECT_FALSE(listing.IsLink());
  }

  EXPECT_THAT(entries,
              UnorderedElementsAre(std::pair(L"file \u00FC", false), std::pair(L"folder", true)));
}

TEST(FolderListingTest, IsEmptyForAnEmptyFolder) {
  const ScratchFolder scratch;
  CFolderListing listing(scratch.Path());

  EXPECT_FALSE(listing.Next());
}

TEST(FolderListingTest, IsEmptyForAFolderThatIsNotThere) {
  const ScratchFolder scratch;
  CFolderListing listing(scratch.Path() + L"\\missing\\*.*");

  EXPECT_FALSE(listing.Next());
  EXPECT_FALSE(listing.Next());
}

TEST(FolderListingTest, PassesOverTheDotEntriesWhereverTheyStand) {
  const FakeListing folder({{L"a"}, {L".."}, {L"b"}, {L"."}});
  CFolderListing listing(L"folder");

  EXPECT_THAT(Names(listing), ElementsAre(L"a", L"b"));
}

TEST(FolderListingTest, KeepsNamesThatOnlyBeginWithDots) {
  const FakeListing folder({{L"."}, {L".."}, {L"..."}, {L".git"}, {L"..a"}});
  CFolderListing listing(L"folder");

  EXPECT_THAT(Names(listing), ElementsAre(L"...", L".git", L"..a"));
}

TEST(FolderListingTest, KeepsTheOrderOfWindows) {
  const FakeListing folder({{L"b"}, {L"c"}, {L"a"}});
  CFolderListing listing(L"folder");

  EXPECT_THAT(Names(listing), ElementsAre(L"b", L"c", L"a"));
}

TEST(FolderListingTest, ClosesItsSearchOnce) {
  const FakeListing folder({{L"a"}});
  {
    CFolderListing listing(L"folder");
    static_cast<void>(Names(listing));
    EXPECT_EQ(folder.Closed(), 0);
  }

  EXPECT_EQ(folder.Closed(), 1);
}

TEST(FolderListingTest, ClosesNothingWhenThereIsNoSearch) {
  const FakeListing folder({}, ERROR_FILE_NOT_FOUND);
  { const CFolderListing listing(L"folder"); }

  EXPECT_EQ(folder.Closed(), 0);
}

constexpr DWORD kFolderPoint = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
constexpr DWORD kFilePoint = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT;

TEST(FolderListingTest, TellsLinksByTheReparseTag) {
  const FakeListing folder({{L"junction", kFolderPoint, IO_REPARSE_TAG_MOUNT_POINT},
                            {L"cloud", kFolderPoint, IO_REPARSE_TAG_CLOUD},
                            {L"file link", kFilePoint, IO_REPARSE_TAG_SYMLINK}});
  CFolderListing listing(L"folder");
  std::vector<std::tuple<std::wstring, bool, bool>> entries;

  while (listing.Next()) {
    entries.emplace_back(listing.Name(), listing.IsFolder(), listing.IsLink());
  }

  EXPECT_THAT(entries,
              ElementsAre(std::tuple(L"junction", true, true), std::tuple(L"cloud", true, false),
                          std::tuple(L"file link", false, true)));
}

}  // namespace
}  // namespace nhupdate_test
