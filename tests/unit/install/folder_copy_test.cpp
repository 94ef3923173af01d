#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/support/files.h"
#include "tests/unit/install/copy_folder_test.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;
using testing::IsEmpty;

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

}  // namespace
}  // namespace nhupdate_test
