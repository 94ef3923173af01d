// Where the folder copy ends, and what it says of it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"
#include "tests/support/interposer.h"
#include "tests/unit/install/copy_folder_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using CopyFolderInTroubleTest = CopyFolderTest;

// Only a missing source is nothing to copy; what is in this one is not known.
TEST_F(CopyFolderInTroubleTest, FailsWhenTheSourceCannotBeListedAtAll) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  FakeListing listing;
  for (const DWORD error : {DWORD{ERROR_ACCESS_DENIED}, DWORD{ERROR_SHARING_VIOLATION}}) {
    listing.Forbid(source_, error);
    product_.ForgetRecords();

    EXPECT_EQ(Copy(1, 1, 0), 0) << error;

    EXPECT_THAT(product_.Transcript(),
                ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                            L"4|Fail to copy file = " + std::to_wstring(error)));
  }
}

TEST_F(CopyFolderInTroubleTest, FailsWhenASubFolderCannotBeListedAtAll) {
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  WriteFileBytes(source_ + L"\\z.txt", "Z");
  FakeListing listing;
  listing.Forbid(source_ + L"\\b", ERROR_ACCESS_DENIED);

  EXPECT_EQ(Copy(1, 1, 0), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                          L"2|Copy folder from {root}\\from\\b to {root}\\to\\b",
                          L"4|Fail to copy file = 5"));
  EXPECT_THAT(ListTree(target_), ElementsAre(L"b\\"));
}

TEST_F(CopyFolderInTroubleTest, FailsWhenTheSourceCanOnlyBeListedInPart) {
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  FakeListing listing;
  listing.BreakOff(source_ + L"\\b", ERROR_NETNAME_DELETED);

  EXPECT_EQ(Copy(1, 1, 0), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                          L"2|Copy folder from {root}\\from\\b to {root}\\to\\b",
                          L"4|Fail to copy file = 64"));
}

TEST_F(CopyFolderInTroubleTest, LogsNotEvenAFailureWithoutDetails) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  const HeldFile lock(source_ + L"\\a.txt");

  EXPECT_EQ(Copy(1, 0, 1), 0);

  EXPECT_THAT(product_.Transcript(), IsEmpty());
}

TEST_F(CopyFolderInTroubleTest, DoesNotCreateWhatIsMissingAboveTheDestination) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  const std::wstring target = product_.Root() + L"\\none\\to";

  EXPECT_EQ(product_.Manager().CopyFolder(target, source_, 1, 1, 1), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\none\\to",
                          L"2|Copy file from {root}\\from\\a.txt to {root}\\none\\to\\a.txt",
                          L"4|Fail to copy file = 3"));
}

TEST_F(CopyFolderInTroubleTest, StopsAtTheFirstFailedFileAtAnyDepth) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  WriteFileBytes(source_ + L"\\b\\held.txt", "H");
  WriteFileBytes(source_ + L"\\b\\next.txt", "N");
  WriteFileBytes(source_ + L"\\z.txt", "Z");
  HeldFile lock(source_ + L"\\b\\held.txt");

  EXPECT_EQ(Copy(1, 1, 0), 0);

  lock.Release();
  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                          L"2|Copy file from {root}\\from\\a.txt to {root}\\to\\a.txt",
                          L"2|Copy folder from {root}\\from\\b to {root}\\to\\b",
                          L"2|Copy file from {root}\\from\\b\\held.txt to {root}\\to\\b\\held.txt",
                          L"4|Fail to copy file = 32"));
  EXPECT_THAT(ListTree(target_), ElementsAre(L"a.txt", L"b\\"));
}

TEST_F(CopyFolderInTroubleTest, ClosesItsListingsAlsoAfterAFailure) {
  WriteFileBytes(source_ + L"\\b\\c\\held.txt", "H");
  int listings = 0;
  int open_listings = 0;
  INTERPOSER(FindFirstFileW) find_first([&](const wchar_t* pattern, WIN32_FIND_DATAW* entry) {
    const HANDLE search = find_first.Original()(pattern, entry);
    if (search != INVALID_HANDLE_VALUE) {
      ++listings;
      ++open_listings;
    }
    return search;
  });
  INTERPOSER(FindClose) find_close([&](HANDLE search) {
    --open_listings;
    return find_close.Original()(search);
  });
  INTERPOSER(CopyFileW) copy([](const wchar_t*, const wchar_t*, BOOL) -> BOOL {
    ::SetLastError(ERROR_DISK_FULL);
    return FALSE;
  });

  EXPECT_EQ(Copy(1, 1, 1), 0);

  EXPECT_EQ(listings, 3);
  EXPECT_EQ(open_listings, 0);
  EXPECT_THAT(
      product_.Transcript(),
      ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to", L"2|Delete Dir : {root}\\to\\b",
                  L"2|Copy folder from {root}\\from\\b to {root}\\to\\b",
                  L"2|Copy folder from {root}\\from\\b\\c to {root}\\to\\b\\c",
                  L"2|Copy file from {root}\\from\\b\\c\\held.txt to {root}\\to\\b\\c\\held.txt",
                  L"4|Fail to copy file = 112"));
}

}  // namespace
}  // namespace nhupdate_test
