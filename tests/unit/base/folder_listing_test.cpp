#include "base/folder_listing.h"

#include "tests/support/fake_listing.h"
#include "tests/support/short_path_policy.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

// Each entry with an "F", "R" or "L" behind a "/" if it is a folder, read-only or a link.
std::vector<std::wstring> Entries(CFolderListing& listing) {
  std::vector<std::wstring> entries;
  while (listing.Next()) {
    entries.push_back(listing.Name() + L"/" + (listing.IsFolder() ? L"F" : L"") +
                      (listing.IsReadOnly() ? L"R" : L"") + (listing.IsLink() ? L"L" : L""));
  }
  return entries;
}

TEST(FolderListingTest, GivesFilesAndFoldersOfOneFolder) {
  const ScratchFolder scratch;
  const std::wstring read_only = scratch.Path() + L"\\read-only";
  WriteFileBytes(scratch.Path() + L"\\file \u00FC", "x");
  WriteFileBytes(scratch.Path() + L"\\folder\\below", "x");
  WriteFileBytes(read_only, "x");
  ::SetFileAttributesW(read_only.c_str(), FILE_ATTRIBUTE_READONLY);
  CFolderListing listing(scratch.Path());

  EXPECT_THAT(Entries(listing), UnorderedElementsAre(L"file \u00FC/", L"folder/F", L"read-only/R"));

  EXPECT_FALSE(listing.Next());
  EXPECT_EQ(listing.Error(), std::nullopt);
  EXPECT_FALSE(listing.HasBrokenOff());
  EXPECT_FALSE(listing.HasNoFolder());
}

TEST(FolderListingTest, GivesOnlyWhatFitsTheWildcard) {
  const ScratchFolder scratch;
  WriteFileBytes(scratch.Path() + L"\\a.txt", "x");
  WriteFileBytes(scratch.Path() + L"\\b.bin", "x");
  CFolderListing listing(scratch.Path(), L"\\*.txt");

  EXPECT_THAT(Entries(listing), ElementsAre(L"a.txt/"));
}

TEST(FolderListingTest, IsOfAFolderWithALongPath) {
  const ScratchFolder scratch;
  const std::wstring folder = LongPathBelow(scratch.Path());
  WriteFileBytes(folder + L"\\file", "x");
  const ShortPathPolicy policy;
  CFolderListing listing(folder);

  EXPECT_THAT(Entries(listing), ElementsAre(L"file/"));
}

TEST(FolderListingTest, PassesOverDotEntriesOnlyAndKeepsTheOrderOfWindows) {
  const FakeListing windows({{L"b"}, {L".."}, {L"..."}, {L"."}, {L".git"}, {L"..a"}, {L"a"}});
  CFolderListing listing(L"folder");

  EXPECT_THAT(Entries(listing), ElementsAre(L"b/", L".../", L".git/", L"..a/", L"a/"));
  EXPECT_THAT(windows.Patterns(), ElementsAre(L"folder\\*.*"));
}

TEST(FolderListingTest, TellsLinksByTheReparseTag) {
  constexpr DWORD kFolderPoint = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
  constexpr DWORD kFilePoint = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT;
  const FakeListing windows({{L"junction", kFolderPoint, IO_REPARSE_TAG_MOUNT_POINT},
                             {L"cloud", kFolderPoint, IO_REPARSE_TAG_CLOUD},
                             {L"file link", kFilePoint, IO_REPARSE_TAG_SYMLINK}});
  CFolderListing listing(L"folder");

  EXPECT_THAT(Entries(listing), ElementsAre(L"junction/FL", L"cloud/F", L"file link/L"));
}

TEST(FolderListingTest, ClosesItsSearchOnceIfThereIsOne) {
  const FakeListing windows({{L"a"}});
  {
    CFolderListing listing(L"folder");
    std::ignore = Entries(listing);
    EXPECT_EQ(windows.Closed(), 0);
  }
  EXPECT_EQ(windows.Closed(), 1);

  const FakeListing nothing({}, ERROR_FILE_NOT_FOUND);
  { const CFolderListing listing(L"folder"); }
  EXPECT_EQ(nothing.Closed(), 0);
}

TEST(FolderListingTest, TellsWhyItBrokeOff) {
  const FakeListing windows({{L"a"}, {L"b"}}, ERROR_NETNAME_DELETED);
  CFolderListing listing(L"folder");

  EXPECT_THAT(Entries(listing), ElementsAre(L"a/", L"b/"));

  EXPECT_FALSE(listing.Next());
  EXPECT_EQ(listing.Error(), DWORD{ERROR_NETNAME_DELETED});
  EXPECT_TRUE(listing.HasBrokenOff());
  EXPECT_FALSE(listing.HasNoFolder());
}

// That there is no folder is known by the error or, where that doesn't tell, by the file in its
// place.
TEST(FolderListingTest, TellsWhyItCouldNotBegin) {
  const ScratchFolder scratch;
  const std::wstring file = scratch.Path() + L"\\file";
  WriteFileBytes(file, "x");
  const std::wstring& folder = scratch.Path();
  const std::wstring missing = scratch.Path() + L"\\missing";
  const struct {
    std::wstring path;
    DWORD error;
    bool is_of_no_folder;
  } cases[] = {
      {folder, ERROR_PATH_NOT_FOUND, true},  {missing, ERROR_PATH_NOT_FOUND, true},
      {folder, ERROR_DIRECTORY, true},       {file, ERROR_DIRECTORY, true},
      {file, ERROR_INVALID_NAME, true},      {missing, ERROR_INVALID_NAME, false},
      {folder, ERROR_INVALID_NAME, false},   {folder, ERROR_ACCESS_DENIED, false},
      {missing, ERROR_ACCESS_DENIED, false}, {folder, ERROR_SHARING_VIOLATION, false},
      {folder, ERROR_NOT_READY, false},      {folder, ERROR_CANT_RESOLVE_FILENAME, false},
  };

  for (const auto& c : cases) {
    const FakeListing windows({}, c.error);
    CFolderListing listing(c.path);

    EXPECT_THAT(Entries(listing), IsEmpty()) << c.error;

    EXPECT_EQ(listing.Error(), c.error);
    EXPECT_EQ(listing.HasNoFolder(), c.is_of_no_folder)
        << c.error << " at " << PrintToString(c.path);
    EXPECT_FALSE(listing.HasBrokenOff()) << c.error;
    EXPECT_EQ(windows.Steps(), 0) << c.error;
  }
}

TEST(FolderListingTest, HasNoFolderWhereThereIsNoneOrAFile) {
  const ScratchFolder scratch;
  const std::wstring file = LongPathBelow(scratch.Path());
  WriteFileBytes(file, "x");
  const ShortPathPolicy policy;

  EXPECT_TRUE(CFolderListing(file).HasNoFolder());
  EXPECT_TRUE(CFolderListing(scratch.Path() + L"\\missing").HasNoFolder());
  EXPECT_TRUE(CFolderListing(scratch.Path() + L"\\missing\\too").HasNoFolder());
}

// The root of an empty drive, or any folder of some file systems, has not even "." and "..".
TEST(FolderListingTest, IsAtItsEndWhereThereIsNoEntryAtAll) {
  for (const DWORD error : {DWORD{ERROR_NO_MORE_FILES}, DWORD{ERROR_FILE_NOT_FOUND}}) {
    const FakeListing windows({}, error);
    CFolderListing listing(L"folder");

    EXPECT_FALSE(listing.Next()) << error;
    EXPECT_EQ(listing.Error(), std::nullopt) << error;
    EXPECT_FALSE(listing.HasNoFolder()) << error;
    EXPECT_FALSE(listing.HasBrokenOff()) << error;
  }
}

}  // namespace
}  // namespace nhupdate_test
