// Files and folders of unusual kinds, names and lengths.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;

bool HasAttribute(const std::wstring& file, DWORD attribute) {
  const DWORD attributes = ::GetFileAttributesW(file.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & attribute) != 0;
}

class CopyFolderWithOddNamesTest : public testing::Test {
 protected:
  CopyFolderWithOddNamesTest() {
    product_.Start();
    product_.ForgetRecords();
    CreateFolders(source_);
    CreateFolders(target_);
  }

  int Copy(int delete_existing = 0) {
    return product_.Manager().CopyFolder(target_, source_, 1, 1, delete_existing);
  }

  InstalledProduct product_;
  const std::wstring source_ = product_.Root() + L"\\from";
  const std::wstring target_ = product_.Root() + L"\\to";
};

TEST_F(CopyFolderWithOddNamesTest, CopiesNamesOfAllKinds) {
  const wchar_t* const kNames[] = {L"two  blanks .txt",
                                   L"100%s %d %n.txt",
                                   L"gr\u00FC\u00DFe.txt",
                                   L"\u65E5\u672C\u8A9E.txt",
                                   L"no extension",
                                   L".hidden",
                                   L"...three",
                                   L"a;b,c=d'e&f^(g).txt",
                                   L"\U0001F600.txt"};
  for (const wchar_t* name : kNames) {
    WriteFileBytes(source_ + L"\\" + name, "file");
    WriteFileBytes(source_ + L"\\folder " + name + L"\\" + name, "inner");
  }

  EXPECT_EQ(Copy(), 1);

  EXPECT_EQ(ListTree(target_), ListTree(source_));
  EXPECT_EQ(ListTree(target_).size(), 3 * std::size(kNames));
}

TEST_F(CopyFolderWithOddNamesTest, LogsAPercentSignAsItIs) {
  WriteFileBytes(source_ + L"\\%s%n%d.txt", "x");

  EXPECT_EQ(Copy(), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                          L"2|Copy file from {root}\\from\\%s%n%d.txt to {root}\\to\\%s%n%d.txt"));
}

TEST_F(CopyFolderWithOddNamesTest, CopiesEmptyFiles) {
  WriteFileBytes(source_ + L"\\empty", "");

  EXPECT_EQ(Copy(), 1);

  EXPECT_EQ(ReadFileBytes(target_ + L"\\empty"), "");
}

TEST_F(CopyFolderWithOddNamesTest, CopiesHiddenAndReadOnlyFilesWithTheirAttributes) {
  WriteFileBytes(source_ + L"\\hidden", "H");
  WriteFileBytes(source_ + L"\\read-only", "R");
  ::SetFileAttributesW((source_ + L"\\hidden").c_str(), FILE_ATTRIBUTE_HIDDEN);
  ::SetFileAttributesW((source_ + L"\\read-only").c_str(), FILE_ATTRIBUTE_READONLY);

  EXPECT_EQ(Copy(), 1);

  EXPECT_EQ(ReadFileBytes(target_ + L"\\hidden"), "H");
  EXPECT_TRUE(HasAttribute(target_ + L"\\hidden", FILE_ATTRIBUTE_HIDDEN));
  EXPECT_TRUE(HasAttribute(target_ + L"\\read-only", FILE_ATTRIBUTE_READONLY));
}

// Windows refuses with error 5; Wine lets root write to anything, so the refusal is a fake.
TEST_F(CopyFolderWithOddNamesTest, FailsAtAReadOnlyFileOfTheDestination) {
  WriteFileBytes(source_ + L"\\a", "A");
  WriteFileBytes(source_ + L"\\b", "B");
  WriteFileBytes(target_ + L"\\a", "old");
  WriteFileBytes(target_ + L"\\b", "old");
  ::SetFileAttributesW((target_ + L"\\b").c_str(), FILE_ATTRIBUTE_READONLY);
  INTERPOSER(CopyFileW) copy(
      [&](const wchar_t* source, const wchar_t* target, BOOL fail_if_there) -> BOOL {
        if (!HasAttribute(target, FILE_ATTRIBUTE_READONLY)) {
          return copy.Original()(source, target, fail_if_there);
        }
        ::SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
      });

  EXPECT_EQ(Copy(), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                          L"2|Copy file from {root}\\from\\a to {root}\\to\\a",
                          L"2|Copy file from {root}\\from\\b to {root}\\to\\b",
                          L"4|Fail to copy file = 5"));
  EXPECT_EQ(ReadFileBytes(target_ + L"\\b"), "old");
}

TEST_F(CopyFolderWithOddNamesTest, FailsWhereAFolderOfTheDestinationHasTheFilesName) {
  WriteFileBytes(source_ + L"\\a", "A");
  WriteFileBytes(target_ + L"\\a\\inner", "I");

  EXPECT_EQ(Copy(1), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                          L"2|Copy file from {root}\\from\\a to {root}\\to\\a",
                          L"4|Fail to copy file = 5"));
  EXPECT_TRUE(Exists(target_ + L"\\a\\inner"));
}

TEST_F(CopyFolderWithOddNamesTest, FailsWhereAFileOfTheDestinationHasTheFoldersName) {
  WriteFileBytes(source_ + L"\\a\\inner", "I");
  WriteFileBytes(target_ + L"\\a", "A");

  EXPECT_EQ(Copy(1), 0);

  EXPECT_THAT(
      product_.Transcript(),
      ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to", L"2|Delete Dir : {root}\\to\\a",
                  L"2|Copy folder from {root}\\from\\a to {root}\\to\\a",
                  L"2|Copy file from {root}\\from\\a\\inner to {root}\\to\\a\\inner",
                  L"4|Fail to copy file = 3"));
  EXPECT_EQ(ReadFileBytes(target_ + L"\\a"), "A");
}

TEST_F(CopyFolderWithOddNamesTest, CopiesTheLongestNames) {
  WriteFileBytes(source_ + L"\\" + std::wstring(255, L'n'), "N");

  EXPECT_EQ(Copy(), 1);

  EXPECT_EQ(ListTree(target_), ListTree(source_));
}

std::wstring PathOfLength(const std::wstring& folder, std::size_t length) {
  std::wstring path = folder;
  while (length - path.size() > 100) {
    path += L"\\" + std::wstring(60, L'd');
  }
  return path + L"\\" + std::wstring(length - path.size() - 1, L'f');
}

// With Windows' old limit of 260 in force the longer ones fail; Wine knows no such limit, and
// Windows none where long paths are enabled.
TEST_F(CopyFolderWithOddNamesTest, CopiesPathsNearAndBeyondTheOldLimit) {
  for (const std::size_t length : {247u, 248u, 258u, 259u, 260u, 261u, 300u, 1000u}) {
    WriteFileBytes(PathOfLength(source_, length), "L");
  }

  EXPECT_EQ(Copy(), 1);

  EXPECT_EQ(ListTree(target_), ListTree(source_));
}

TEST_F(CopyFolderWithOddNamesTest, FailsAtAPathThatWindowsTakesForTooLong) {
  const std::wstring inner = std::wstring(259 - target_.size(), L'n');  // one unit too much
  WriteFileBytes(source_ + L"\\" + inner, "N");
  INTERPOSER(CopyFileW) copy(
      [&](const wchar_t* source, const wchar_t* target, BOOL fail_if_there) -> BOOL {
        if (std::wstring(target).size() < MAX_PATH) {
          return copy.Original()(source, target, fail_if_there);
        }
        ::SetLastError(ERROR_PATH_NOT_FOUND);
        return FALSE;
      });

  EXPECT_EQ(Copy(), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {root}\\from to {root}\\to",
                          L"2|Copy file from {root}\\from\\" + inner + L" to {root}\\to\\" + inner,
                          L"4|Fail to copy file = 3"));
}

}  // namespace
}  // namespace nhupdate_test
