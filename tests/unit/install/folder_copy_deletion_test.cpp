// Which folders of the destination the copy deletes, and which it never touches.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;

class CopyFolderThatDeletesTest : public testing::Test {
 protected:
  CopyFolderThatDeletesTest() {
    product_.Start();
    product_.ForgetRecords();
    CreateFolders(staged_);
  }

  int Copy(int delete_existing) {
    return product_.Manager().CopyFolder(installed_, staged_, 1, 1, delete_existing);
  }

  InstalledProduct product_;
  const std::wstring installed_ = product_.Base();
  const std::wstring staged_ = product_.App();
};

TEST_F(CopyFolderThatDeletesTest, ReplacesASubFolderThatBothSidesHave) {
  WriteFileBytes(staged_ + L"\\Sub\\new.txt", "N");
  WriteFileBytes(installed_ + L"\\Sub\\old.txt", "O");
  WriteFileBytes(installed_ + L"\\Sub\\inner\\old.txt", "O");

  EXPECT_EQ(Copy(1), 1);

  EXPECT_THAT(ListTree(installed_ + L"\\Sub"), ElementsAre(L"new.txt"));
}

TEST_F(CopyFolderThatDeletesTest, KeepsASubFolderThatOnlyTheDestinationHas) {
  WriteFileBytes(staged_ + L"\\Sub\\new.txt", "N");
  WriteFileBytes(installed_ + L"\\Own\\own.txt", "O");

  EXPECT_EQ(Copy(1), 1);

  EXPECT_THAT(ListTree(installed_ + L"\\Own"), ElementsAre(L"own.txt"));
}

TEST_F(CopyFolderThatDeletesTest, DeletesNothingWhenNotToldTo) {
  WriteFileBytes(staged_ + L"\\Sub\\new.txt", "N");
  WriteFileBytes(installed_ + L"\\Sub\\old.txt", "O");

  EXPECT_EQ(Copy(0), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {base}\\Updater\\App to {base}",
                          L"2|Copy folder from {base}\\Updater\\App\\Sub to "
                          L"{base}\\Sub",
                          L"2|Copy file from {base}\\Updater\\App\\Sub\\new.txt to "
                          L"{base}\\Sub\\new.txt"));
  EXPECT_THAT(ListTree(installed_ + L"\\Sub"), ElementsAre(L"new.txt", L"old.txt"));
}

TEST_F(CopyFolderThatDeletesTest, PassesOverTheRunningProgramsFolderWhateverIsInIt) {
  WriteFileBytes(staged_ + L"\\NHUpdateManager\\new.txt", "N");
  WriteFileBytes(product_.Module() + L"\\old.txt", "O");
  const auto before = ListTree(product_.Module());

  EXPECT_EQ(Copy(1), 1);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Copy folder from {base}\\Updater"
                                                 L"\\App to {base}"));
  EXPECT_EQ(ListTree(product_.Module()), before);
}

// The two names are told apart although Windows takes them for one folder.
TEST_F(CopyFolderThatDeletesTest, KnowsTheRunningProgramsFolderOnlyInItsOwnLetterCase) {
  WriteFileBytes(staged_ + L"\\nhupdatemanager\\new.txt", "N");
  WriteFileBytes(product_.Module() + L"\\old.txt", "O");

  EXPECT_EQ(Copy(1), 1);

  EXPECT_TRUE(Exists(product_.Module() + L"\\new.txt"));
  EXPECT_FALSE(Exists(product_.Module() + L"\\old.txt"));
}

TEST_F(CopyFolderThatDeletesTest, PassesOverTheRunningProgramsFolderAtAnyDepth) {
  InstalledProduct deeper({.module = L"\\Tools\\NHUpdateManager"});
  WriteFileBytes(deeper.Root() + L"\\from\\Tools\\NHUpdateManager\\new.txt", "N");
  WriteFileBytes(deeper.Root() + L"\\from\\Tools\\b.txt", "B");

  EXPECT_EQ(deeper.Manager().CopyFolder(deeper.Base(), deeper.Root() + L"\\from", 1, 1, 0), 1);

  EXPECT_FALSE(Exists(deeper.Module() + L"\\new.txt"));
  EXPECT_TRUE(Exists(deeper.Base() + L"\\Tools\\b.txt"));
}

}  // namespace
}  // namespace nhupdate_test
