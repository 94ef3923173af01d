#include "base/folder_listing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/interposer.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate {
namespace {

using nhupdate_test::Interposer;
using nhupdate_test::ScratchFolder;
using nhupdate_test::WriteFileBytes;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct Entry {
  const wchar_t* name;
  DWORD attributes = FILE_ATTRIBUTE_NORMAL;
  DWORD reparse_tag = 0;
};

// A folder whose entries are made up.
class FakeFolder {
 public:
  explicit FakeFolder(std::vector<Entry> entries, DWORD end_error = ERROR_NO_MORE_FILES)
      : entries_(std::move(entries)), end_error_(end_error) {}

  [[nodiscard]] int Steps() const { return next_.Calls(); }
  [[nodiscard]] int Closed() const { return close_.Calls(); }

 private:
  static inline const HANDLE kSearch = reinterpret_cast<HANDLE>(std::size_t{0x5EA4C4});

  BOOL Give(WIN32_FIND_DATAW* data) {
    if (position_ == entries_.size()) {
      ::SetLastError(end_error_);
      return FALSE;
    }
    const Entry& entry = entries_[position_++];
    *data = {};
    data->dwFileAttributes = entry.attributes;
    data->dwReserved0 = entry.reparse_tag;
    std::wcscpy(data->cFileName, entry.name);
    return TRUE;
  }

  std::vector<Entry> entries_;
  DWORD end_error_;
  std::size_t position_ = 0;
  Interposer<decltype(::FindFirstFileW)> first_{
      "FindFirstFileW", [this](const wchar_t*, WIN32_FIND_DATAW* data) {
        return Give(data) ? kSearch : INVALID_HANDLE_VALUE;
      }};
  Interposer<decltype(::FindNextFileW)> next_{
      "FindNextFileW", [this](HANDLE search, WIN32_FIND_DATAW* data) -> BOOL {
        EXPECT_EQ(search, kSearch);
        return Give(data);
      }};
  Interposer<decltype(::FindClose)> close_{"FindClose", [](HANDLE search) -> BOOL {
                                             EXPECT_EQ(search, kSearch);
                                             return TRUE;
                                           }};
};

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
  CFolderListing listing(scratch.Path() + L"\\*.*");
  while (listing.Next()) {
    entries.emplace_back(listing.Name(), listing.IsFolder());
    EXPECT_FALSE(listing.IsLink());
  }

  EXPECT_THAT(entries,
              UnorderedElementsAre(std::pair(L"file \u00FC", false), std::pair(L"folder", true)));
}

TEST(FolderListingTest, IsEmptyForAnEmptyFolder) {
  const ScratchFolder scratch;
  CFolderListing listing(scratch.Path() + L"\\*.*");

  EXPECT_FALSE(listing.Next());
}

TEST(FolderListingTest, IsEmptyForAFolderThatIsNotThere) {
  const ScratchFolder scratch;
  CFolderListing listing(scratch.Path() + L"\\missing\\*.*");

  EXPECT_FALSE(listing.Next());
  EXPECT_FALSE(listing.Next());
}

TEST(FolderListingTest, PassesOverTheDotEntriesWhereverTheyStand) {
  const FakeFolder folder({{L"a"}, {L".."}, {L"b"}, {L"."}});
  CFolderListing listing(L"folder\\*.*");

  EXPECT_THAT(Names(listing), ElementsAre(L"a", L"b"));
}

TEST(FolderListingTest, KeepsNamesThatOnlyBeginWithDots) {
  const FakeFolder folder({{L"."}, {L".."}, {L"..."}, {L".git"}, {L"..a"}});
  CFolderListing listing(L"folder\\*.*");

  EXPECT_THAT(Names(listing), ElementsAre(L"...", L".git", L"..a"));
}

TEST(FolderListingTest, KeepsTheOrderOfWindows) {
  const FakeFolder folder({{L"b"}, {L"c"}, {L"a"}});
  CFolderListing listing(L"folder\\*.*");

  EXPECT_THAT(Names(listing), ElementsAre(L"b", L"c", L"a"));
}

TEST(FolderListingTest, EndsWhereWindowsCannotGoOn) {
  const FakeFolder folder({{L"a"}, {L"b"}}, ERROR_NETNAME_DELETED);
  CFolderListing listing(L"folder\\*.*");

  EXPECT_THAT(Names(listing), ElementsAre(L"a", L"b"));
  EXPECT_FALSE(listing.Next());
  EXPECT_EQ(listing.Error(), static_cast<DWORD>(ERROR_NETNAME_DELETED));
}

TEST(FolderListingTest, HasNoErrorAtTheEnd) {
  const FakeFolder folder({{L"a"}});
  CFolderListing listing(L"folder\\*.*");

  EXPECT_THAT(Names(listing), ElementsAre(L"a"));
  EXPECT_EQ(listing.Error(), std::nullopt);
}

TEST(FolderListingTest, IsEmptyWhenWindowsCannotBegin) {
  const FakeFolder folder({}, ERROR_ACCESS_DENIED);
  CFolderListing listing(L"folder\\*.*");

  EXPECT_THAT(Names(listing), IsEmpty());
  EXPECT_EQ(folder.Steps(), 0);
}

TEST(FolderListingTest, ClosesItsSearchOnce) {
  const FakeFolder folder({{L"a"}});
  {
    CFolderListing listing(L"folder\\*.*");
    static_cast<void>(Names(listing));
    EXPECT_EQ(folder.Closed(), 0);
  }

  EXPECT_EQ(folder.Closed(), 1);
}

TEST(FolderListingTest, ClosesNothingWhenThereIsNoSearch) {
  const FakeFolder folder({}, ERROR_FILE_NOT_FOUND);
  { const CFolderListing listing(L"folder\\*.*"); }

  EXPECT_EQ(folder.Closed(), 0);
}

struct LinkCase {
  const char* name;
  DWORD attributes;
  DWORD reparse_tag;
  bool is_link;
};

constexpr DWORD kFolderPoint = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
constexpr DWORD kFilePoint = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT;

constexpr LinkCase kLinkCases[] = {
    {"a junction or mount point", kFolderPoint, 0xA0000003, true},
    {"a symbolic link to a folder", kFolderPoint, 0xA000000C, true},
    {"a symbolic link to a file", kFilePoint, 0xA000000C, true},
    {"a link made by the Linux subsystem", kFilePoint, 0xA000001D, true},
    {"another maker's name surrogate", kFolderPoint, 0x20001234, true},
    {"a folder that doesn't say what it is", kFolderPoint, 0, true},
    {"a file that doesn't say what it is", kFilePoint, 0, true},
    {"a cloud placeholder", kFilePoint, 0x9000001A, false},
    {"a cloud placeholder of another provider", kFolderPoint, 0x9000601A, false},
    {"an older cloud placeholder", kFolderPoint, 0x80000021, false},
    {"a deduplicated file", kFilePoint, 0x80000013, false},
    {"a compressed system file", kFilePoint, 0x80000017, false},
    {"an app alias", kFilePoint, 0x8000001B, false},
    {"a plain folder with a leftover tag", FILE_ATTRIBUTE_DIRECTORY, 0xA0000003, false},
    {"a plain file", FILE_ATTRIBUTE_ARCHIVE, 0, false},
};

TEST(FolderListingTest, KnowsLinksFromOtherSpecialEntries) {
  for (const LinkCase& c : kLinkCases) {
    const FakeFolder folder({{L"entry", c.attributes, c.reparse_tag}});
    CFolderListing listing(L"folder\\*.*");

    ASSERT_TRUE(listing.Next());

    EXPECT_EQ(listing.IsLink(), c.is_link) << c.name;
    EXPECT_EQ(listing.IsFolder(), (c.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) << c.name;
  }
}

}  // namespace
}  // namespace nhupdate
