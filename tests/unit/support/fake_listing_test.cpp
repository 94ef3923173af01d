#include "tests/support/fake_listing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "base/unique_handle.h"
#include "tests/support/files.h"
#include "tests/support/scratch_folder.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

// A listing as Windows gives it: the names, and the error at its end.
struct Listed {
  std::vector<std::wstring> names;
  DWORD end_error = ERROR_SUCCESS;
};

Listed List(const std::wstring& pattern) {
  Listed listed;
  WIN32_FIND_DATAW entry = {};
  const HANDLE search = ::FindFirstFileW(pattern.c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) {
    listed.end_error = ::GetLastError();
    return listed;
  }
  do {
    listed.names.push_back(entry.cFileName);
  } while (::FindNextFileW(search, &entry));
  listed.end_error = ::GetLastError();
  ::FindClose(search);
  return listed;
}

TEST(FakeListingTest, ShowsMadeUpEntriesInAnyFolder) {
  const FakeListing listing({{L"b"}, {L"a"}}, ERROR_NETNAME_DELETED);

  const Listed listed = List(L"C:\\no such folder\\*");

  EXPECT_THAT(listed.names, ElementsAre(L"b", L"a"));
  EXPECT_EQ(listed.end_error, DWORD{ERROR_NETNAME_DELETED});
  EXPECT_THAT(listing.Patterns(), ElementsAre(L"C:\\no such folder\\*"));
  EXPECT_EQ(listing.Steps(), 2);
  EXPECT_EQ(listing.Closed(), 1);
}

TEST(FakeListingTest, CannotBeginWithoutMadeUpEntries) {
  const FakeListing listing({}, ERROR_NOT_READY);

  const Listed listed = List(L"C:\\*");

  EXPECT_THAT(listed.names, testing::IsEmpty());
  EXPECT_EQ(listed.end_error, DWORD{ERROR_NOT_READY});
}

class FakeListingOfRealFoldersTest : public testing::Test {
 protected:
  FakeListingOfRealFoldersTest() { WriteFileBytes(folder_ + L"\\file", ""); }

  // What Windows says of the folder's place.
  DWORD PlaceOf(std::wstring& place) const {
    const nhupdate::UniqueFile folder(::CreateFileW(folder_.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                    nullptr, OPEN_EXISTING,
                                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    std::array<wchar_t, 260> path = {};
    const DWORD length = ::GetFinalPathNameByHandleW(folder.Get(), path.data(), 260, 0);
    place = path.data();
    return length;
  }

  ScratchFolder scratch_;
  const std::wstring folder_ = scratch_.Path() + L"\\folder";
  FakeListing listing_;
};

TEST_F(FakeListingOfRealFoldersTest, ChangesNothingByItself) {
  EXPECT_THAT(List(folder_ + L"\\*").names, ElementsAre(L".", L"..", L"file"));
  EXPECT_EQ(List(folder_ + L"\\*").end_error, DWORD{ERROR_NO_MORE_FILES});
}

TEST_F(FakeListingOfRealFoldersTest, ForbidsOneFolder) {
  listing_.Forbid(folder_, ERROR_ACCESS_DENIED);

  EXPECT_EQ(List(folder_ + L"\\*").end_error, DWORD{ERROR_ACCESS_DENIED});
  EXPECT_EQ(List(scratch_.Path() + L"\\*").names.size(), 3u);
}

TEST_F(FakeListingOfRealFoldersTest, BreaksOffAfterTheFirstEntry) {
  listing_.BreakOff(folder_, ERROR_NETNAME_DELETED);

  EXPECT_EQ(List(folder_ + L"\\*").names.size(), 1u);
  EXPECT_EQ(List(folder_ + L"\\*").end_error, DWORD{ERROR_NETNAME_DELETED});
}

TEST_F(FakeListingOfRealFoldersTest, AddsAttributesAndATag) {
  listing_.Disguise(folder_, FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_SYMLINK);
  WIN32_FIND_DATAW entry = {};

  const HANDLE search = ::FindFirstFileW((scratch_.Path() + L"\\folder").c_str(), &entry);
  ::FindClose(search);

  EXPECT_EQ(entry.dwFileAttributes & (FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY),
            DWORD{FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY});
  EXPECT_EQ(entry.dwReserved0, IO_REPARSE_TAG_SYMLINK);
}

TEST_F(FakeListingOfRealFoldersTest, LeadsElsewhere) {
  listing_.LeadElsewhere(folder_, L"\\Device\\V1");
  std::wstring place;

  EXPECT_EQ(PlaceOf(place), 10u);

  EXPECT_EQ(place, L"\\Device\\V1");
}

TEST_F(FakeListingOfRealFoldersTest, LeadsToAPlaceThatNobodyKnows) {
  listing_.LeadElsewhere(folder_, L"");
  std::wstring place;

  EXPECT_EQ(PlaceOf(place), 0u);
}

}  // namespace
}  // namespace nhupdate_test
