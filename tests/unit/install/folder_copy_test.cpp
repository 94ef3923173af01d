#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/unit/install/fake_listing.h"
#include "tests/unit/install/file_lock.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;
using testing::IsEmpty;

class CopyFolderTest : public testing::Test {
 protected:
  CopyFolderTest() {
    product_.Start();
    product_.ForgetRecords();
    CreateFolders(source_);
  }

  int Copy(int recurse, int log_details, int delete_existing) {
    return product_.Manager().CopyFolder(target_, source_, recurse, log_details, delete_existing);
  }

  InstalledProduct product_;
  const std::wstring source_ = product_.Root() + L"\\from";
  const std::wstring target_ = product_.Root() + L"\\to";
};

TEST_F(CopyFolderTest, CopiesEverythingAndLogsEachStepInOrder) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  WriteFileBytes(source_ + L"\\b\\d\\e.txt", "E");
  WriteFileBytes(source_ + L"\\f.txt", "F");

  EXPECT_EQ(Copy(1, 1, 1), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                          L"2|Copy file from {root}\\from\\a.txt to {root}\\to\\a.txt",
                          L"2|Delete Dir : {root}\\to\\b",
                          L"2|Copy folder from {root}\\from\\b to {root}\\to\\b",
                          L"2|Copy file from {root}\\from\\b\\c.txt to {root}\\to\\b\\c.txt",
                          L"2|Copy folder from {root}\\from\\b\\d to {root}\\to\\b\\d",
                          L"2|Copy file from {root}\\from\\b\\d\\e.txt to {root}\\to\\b\\d\\e.txt",
                          L"2|Copy file from {root}\\from\\f.txt to {root}\\to\\f.txt"));
  EXPECT_EQ(ListTree(target_), ListTree(source_));
  EXPECT_EQ(ReadFileBytes(target_ + L"\\b\\d\\e.txt"), "E");
}

TEST_F(CopyFolderTest, OverwritesFilesAndKeepsThoseOnlyInTheDestination) {
  WriteFileBytes(source_ + L"\\a.txt", "new");
  WriteFileBytes(target_ + L"\\a.txt", "old and longer");
  WriteFileBytes(target_ + L"\\own.txt", "own");

  EXPECT_EQ(Copy(1, 1, 1), 1);

  EXPECT_EQ(ReadFileBytes(target_ + L"\\a.txt"), "new");
  EXPECT_EQ(ReadFileBytes(target_ + L"\\own.txt"), "own");
}

TEST_F(CopyFolderTest, FailsWhenTheSourceCanOnlyBeListedInPart) {
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  FakeListing listing;
  listing.BreakOff(source_ + L"\\b", ERROR_NETNAME_DELETED);

  EXPECT_EQ(Copy(1, 1, 0), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                          L"2|Copy folder from {root}\\from\\b to {root}\\to\\b",
                          L"4|Fail to copy file = 64"));
}

TEST_F(CopyFolderTest, PassesOverFoldersWithoutRecursion) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  WriteFileBytes(target_ + L"\\b\\old.txt", "old");

  EXPECT_EQ(Copy(0, 1, 1), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                          L"2|Copy file from {root}\\from\\a.txt to {root}\\to\\a.txt"));
  EXPECT_THAT(ListTree(target_), ElementsAre(L"a.txt", L"b\\", L"b\\old.txt"));
}

TEST_F(CopyFolderTest, LogsNothingWithoutDetails) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  CreateFolders(target_ + L"\\b");

  EXPECT_EQ(Copy(1, 0, 1), 1);

  EXPECT_THAT(product_.Transcript(), IsEmpty());
  EXPECT_EQ(ListTree(target_), ListTree(source_));
}

TEST_F(CopyFolderTest, LogsNotEvenAFailureWithoutDetails) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  const FileLock lock(source_ + L"\\a.txt");

  EXPECT_EQ(Copy(1, 0, 1), 0);

  EXPECT_THAT(product_.Transcript(), IsEmpty());
}

TEST_F(CopyFolderTest, TakesAnyNumberButZeroForYes) {
  WriteFileBytes(source_ + L"\\b\\c.txt", "C");
  WriteFileBytes(target_ + L"\\b\\old.txt", "old");

  EXPECT_EQ(Copy(-1, 2, 256), 1);

  EXPECT_THAT(
      product_.Transcript(),
      ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to", L"2|Delete Dir : {root}\\to\\b",
                  L"2|Copy folder from {root}\\from\\b to {root}\\to\\b",
                  L"2|Copy file from {root}\\from\\b\\c.txt to {root}\\to\\b\\c.txt"));
}

TEST_F(CopyFolderTest, CreatesTheDestinationOfAMissingSource) {
  EXPECT_EQ(product_.Manager().CopyFolder(target_, product_.Root() + L"\\none", 1, 1, 1), 1);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Copy folder from {root}\\none to {root}\\to"));
  EXPECT_TRUE(Exists(target_));
}

TEST_F(CopyFolderTest, CopiesEmptyFolders) {
  CreateFolders(source_ + L"\\empty\\inner");

  EXPECT_EQ(Copy(1, 0, 0), 1);

  EXPECT_THAT(ListTree(target_), ElementsAre(L"empty\\", L"empty\\inner\\"));
}

TEST_F(CopyFolderTest, DoesNotCreateWhatIsMissingAboveTheDestination) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  const std::wstring target = product_.Root() + L"\\none\\to";

  EXPECT_EQ(product_.Manager().CopyFolder(target, source_, 1, 1, 1), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\none\\to",
                          L"2|Copy file from {root}\\from\\a.txt to {root}\\none\\to\\a.txt",
                          L"4|Fail to copy file = 3"));
}

TEST_F(CopyFolderTest, StopsAtTheFirstFailedFileAtAnyDepth) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  WriteFileBytes(source_ + L"\\b\\held.txt", "H");
  WriteFileBytes(source_ + L"\\b\\next.txt", "N");
  WriteFileBytes(source_ + L"\\z.txt", "Z");
  FileLock lock(source_ + L"\\b\\held.txt");

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

TEST_F(CopyFolderTest, ClosesItsListingsAlsoAfterAFailure) {
  WriteFileBytes(source_ + L"\\b\\c\\held.txt", "H");
  int listings = 0;
  int open_listings = 0;
  Interposer<decltype(::FindFirstFileW)> find_first(
      "FindFirstFileW", [&](const wchar_t* pattern, WIN32_FIND_DATAW* entry) {
        const HANDLE search = find_first.Original()(pattern, entry);
        if (search != INVALID_HANDLE_VALUE) {
          ++listings;
          ++open_listings;
        }
        return search;
      });
  Interposer<decltype(::FindClose)> find_close("FindClose", [&](HANDLE search) {
    --open_listings;
    return find_close.Original()(search);
  });
  Interposer<decltype(::CopyFileW)> copy("CopyFileW",
                                         [](const wchar_t*, const wchar_t*, BOOL) -> BOOL {
                                           ::SetLastError(ERROR_DISK_FULL);
                                           return FALSE;
                                         });

  EXPECT_EQ(Copy(1, 1, 1), 0);

  EXPECT_EQ(listings, 3);
  EXPECT_EQ(open_listings, 0);
  EXPECT_EQ(product_.Transcript().back(), L"4|Fail to copy file = 112");
}

TEST_F(CopyFolderTest, FailsWhereWindowsCannotGoOnListing) {
  WriteFileBytes(source_ + L"\\a.txt", "A");
  WriteFileBytes(source_ + L"\\b.txt", "B");
  Interposer<decltype(::FindNextFileW)> find_next(
      "FindNextFileW", [&](HANDLE search, WIN32_FIND_DATAW* entry) {
        const BOOL is_found = find_next.Original()(search, entry);
        if (is_found && std::wstring(entry->cFileName) == L"b.txt") {
          ::SetLastError(ERROR_IO_DEVICE);
          return FALSE;
        }
        return is_found;
      });

  EXPECT_EQ(Copy(1, 1, 1), 0);

  EXPECT_FALSE(Exists(target_ + L"\\b.txt"));
}

}  // namespace
}  // namespace nhupdate_test
