// A listing that can't begin, breaks off or just ends.

#include <gtest/gtest.h>

#include <optional>

#include "base/folder_listing.h"
#include "tests/support/fake_listing.h"

namespace nhupdate_test {
namespace {

using nhupdate::CFolderListing;

// Walks to the end and returns the number of entries.
int CountEntries(CFolderListing& listing) {
  int entries = 0;
  while (listing.Next()) {
    ++entries;
  }
  return entries;
}

TEST(FolderListingErrorTest, IsThatOfAListingThatBrokeOff) {
  const FakeListing folder({{L"a"}, {L"b"}}, ERROR_NETNAME_DELETED);
  CFolderListing listing(L"folder");

  EXPECT_EQ(CountEntries(listing), 2);

  EXPECT_FALSE(listing.Next());
  EXPECT_EQ(listing.Error(), DWORD{ERROR_NETNAME_DELETED});
  EXPECT_TRUE(listing.HasBrokenOff());
}

TEST(FolderListingErrorTest, IsNoneAtTheEnd) {
  const FakeListing folder({{L"a"}});
  CFolderListing listing(L"folder");

  EXPECT_EQ(CountEntries(listing), 1);

  EXPECT_EQ(listing.Error(), std::nullopt);
  EXPECT_FALSE(listing.HasBrokenOff());
}

TEST(FolderListingErrorTest, IsThatOfAListingThatCouldNotBegin) {
  constexpr DWORD kErrors[] = {ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION,
                               ERROR_DIRECTORY,     ERROR_INVALID_NAME,
                               ERROR_NOT_READY,     ERROR_CANT_RESOLVE_FILENAME};
  for (const DWORD error : kErrors) {
    const FakeListing folder({}, error);
    CFolderListing listing(L"folder");

    EXPECT_EQ(CountEntries(listing), 0) << error;

    EXPECT_EQ(listing.Error(), error);
    EXPECT_FALSE(listing.HasBrokenOff()) << error;
    EXPECT_EQ(folder.Steps(), 0) << error;
  }
}

TEST(FolderListingErrorTest, IsNoneForAFolderThatIsNotThere) {
  constexpr DWORD kErrors[] = {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_NO_MORE_FILES};
  for (const DWORD error : kErrors) {
    const FakeListing folder({}, error);
    CFolderListing listing(L"folder");

    EXPECT_EQ(CountEntries(listing), 0) << error;

    EXPECT_EQ(listing.Error(), std::nullopt) << error;
    EXPECT_FALSE(listing.HasBrokenOff()) << error;
  }
}

}  // namespace
}  // namespace nhupdate_test
