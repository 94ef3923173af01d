#include "tests/support/fake_listing.h"

#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

// The names of a listing as Windows gives it, and the error at its end.
std::vector<std::wstring> List(const std::wstring& pattern) {
  std::vector<std::wstring> listed;
  WIN32_FIND_DATAW entry = {};
  const UniqueFindHandle search(::FindFirstFileW(pattern.c_str(), &entry));
  for (BOOL is_found = search.IsValid(); is_found;
       is_found = ::FindNextFileW(search.Get(), &entry)) {
    listed.push_back(entry.cFileName);
  }
  listed.push_back(std::to_wstring(::GetLastError()));
  return listed;
}

TEST(FakeListingTest, ShowsMadeUpEntriesInAnyFolder) {
  const FakeListing listing({{L"b"}, {L"a"}}, ERROR_NETNAME_DELETED);

  EXPECT_THAT(List(L"C:\\no such folder\\*"), ElementsAre(L"b", L"a", L"64"));

  EXPECT_THAT(listing.Patterns(), ElementsAre(L"C:\\no such folder\\*"));
  EXPECT_EQ(listing.Steps(), 2);
  EXPECT_EQ(listing.Closed(), 1);
}

TEST(FakeListingTest, CannotBeginWithoutMadeUpEntries) {
  const FakeListing listing({}, ERROR_NOT_READY);

  EXPECT_THAT(List(L"C:\\*"), ElementsAre(L"21"));
}

class FakeListingOfRealFoldersTest : public testing::Test {
 protected:
  FakeListingOfRealFoldersTest() { WriteFileBytes(folder_ + L"\\file", ""); }

  ScratchFolder scratch_;
  const std::wstring folder_ = scratch_.Path() + L"\\folder";
  FakeListing listing_;
};

TEST_F(FakeListingOfRealFoldersTest, ChangesOnlyTheFoldersThatItIsToldOf) {
  const std::wstring other = scratch_.Path() + L"\\other";
  WriteFileBytes(other + L"\\file", "");
  listing_.Forbid(folder_, ERROR_ACCESS_DENIED);
  listing_.BreakOff(other, ERROR_NETNAME_DELETED);

  EXPECT_THAT(List(folder_ + L"\\*"), ElementsAre(L"5"));
  EXPECT_THAT(List(other + L"\\*"), ElementsAre(L".", L"64"));
  EXPECT_THAT(List(scratch_.Path() + L"\\*"), ElementsAre(L".", L"..", L"folder", L"other", L"18"));
}

TEST_F(FakeListingOfRealFoldersTest, AddsAttributesAndATag) {
  constexpr DWORD kShown = FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY;
  listing_.Disguise(folder_, FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_SYMLINK);
  WIN32_FIND_DATAW entry = {};

  ::FindClose(::FindFirstFileW(folder_.c_str(), &entry));

  EXPECT_EQ(entry.dwFileAttributes & kShown, kShown);
  EXPECT_EQ(entry.dwReserved0, IO_REPARSE_TAG_SYMLINK);
}

TEST_F(FakeListingOfRealFoldersTest, LeadsElsewhereOrToAPlaceThatNobodyKnows) {
  const auto place = [&] {
    const UniqueFile opened(::CreateFileW(folder_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    std::array<wchar_t, 260> path = {};
    const DWORD length = ::GetFinalPathNameByHandleW(opened.Get(), path.data(), 260, 0);
    return std::to_wstring(length) + L" " + path.data();
  };

  listing_.LeadElsewhere(folder_, L"\\Device\\V1");
  EXPECT_EQ(place(), L"10 \\Device\\V1");
  listing_.LeadElsewhere(folder_, L"");
  EXPECT_EQ(place(), L"0 ");
}

}  // namespace
}  // namespace nhupdate_test
