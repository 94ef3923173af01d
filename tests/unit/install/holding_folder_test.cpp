// A sub-folder of the destination that holds the source of the copy is never deleted, by whatever
// name it goes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "tests/support/current_folder.h"
#include "tests/support/fake_listing.h"
#include "tests/support/files.h"
#include "tests/support/installed_product.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;

class HoldingFolderTest : public testing::TestWithParam<const wchar_t*> {
 protected:
  HoldingFolderTest() {
    product_.Start();
    product_.ForgetRecords();
    CreateFolders(staged_);
  }

  int Copy(const std::wstring& destination) {
    return product_.Manager().CopyFolder(destination, staged_, 1, 1, 1);
  }

  InstalledProduct product_;
  const std::wstring installed_ = product_.Base();
  const std::wstring staged_ = product_.App();
};

TEST_P(HoldingFolderTest, IsCopiedIntoButNeverDeleted) {
  const std::wstring name = GetParam();
  WriteFileBytes(staged_ + L"\\" + name + L"\\Updater.exe", "new");
  WriteFileBytes(staged_ + L"\\zz.txt", "Z");
  WriteFileBytes(installed_ + L"\\Updater\\Updater.exe", "old");
  WriteFileBytes(installed_ + L"\\Updater\\Config\\ut.ini", "ini");

  EXPECT_EQ(Copy(installed_), 1);

  EXPECT_THAT(
      product_.Transcript(),
      ElementsAre(L"2|Copy folder from {base}\\Updater\\App to {base}",
                  L"2|Copy folder from {base}\\Updater\\App\\" + name + L" to {base}\\" + name,
                  L"2|Copy file from {base}\\Updater\\App\\" + name + L"\\Updater.exe to {base}\\" +
                      name + L"\\Updater.exe",
                  L"2|Copy file from {base}\\Updater\\App\\zz.txt to "
                  L"{base}\\zz.txt"));
  EXPECT_EQ(ReadFileBytes(installed_ + L"\\Updater\\Updater.exe"), "new");
  EXPECT_TRUE(Exists(installed_ + L"\\Updater\\Config\\ut.ini"));
  EXPECT_TRUE(Exists(staged_ + L"\\zz.txt"));
}

INSTANTIATE_TEST_SUITE_P(InAnyLetterCase, HoldingFolderTest,
                         testing::Values(L"Updater", L"UPDATER", L"updater"));

TEST_F(HoldingFolderTest, IsNotMistakenAboutAFolderWhoseNameOnlyBeginsAlike) {
  WriteFileBytes(staged_ + L"\\Up\\new.txt", "N");
  WriteFileBytes(installed_ + L"\\Up\\old.txt", "O");

  EXPECT_EQ(Copy(installed_), 1);

  EXPECT_THAT(ListTree(installed_ + L"\\Up"), ElementsAre(L"new.txt"));
}

// A program in C:\NHUpdateManager takes \NHUpdateManager, which is its own folder, for the
// installed one.
TEST_F(HoldingFolderTest, IsRecognisedAsSeenFromTheCurrentDrive) {
  const CurrentFolder drive(staged_.substr(0, 3));
  WriteFileBytes(staged_ + L"\\Config\\strings.json", "S");

  EXPECT_EQ(Copy(staged_.substr(2)), 0);  // no file can be copied onto itself

  EXPECT_EQ(ReadFileBytes(staged_ + L"\\Config\\strings.json"), "S");
  const std::wstring target = staged_.substr(2);
  EXPECT_THAT(
      product_.Transcript(),
      ElementsAre(L"2|Copy folder from {base}\\Updater\\App to " + target,
                  L"2|Copy folder from {base}\\Updater\\App\\Config to " + target + L"\\Config",
                  L"2|Copy file from {base}\\Updater\\App\\Config\\strings.json "
                  L"to " +
                      target + L"\\Config\\strings.json",
                  L"4|Fail to copy file = 32"));
}

TEST_F(HoldingFolderTest, IsRecognisedBehindALinkFurtherUp) {
  const std::wstring linked = product_.Root() + L"\\linked\\Sub";
  WriteFileBytes(staged_ + L"\\Sub\\new.txt", "N");
  WriteFileBytes(linked + L"\\App\\Sub\\new.txt", "N");
  FakeListing listing;
  listing.LeadElsewhere(product_.Root() + L"\\linked\\", L"\\Device\\V1");
  listing.LeadElsewhere(linked, L"\\Device\\V1\\Sub");
  listing.LeadElsewhere(staged_ + L"\\Sub", L"\\Device\\V1\\Sub\\App\\Sub");

  EXPECT_EQ(Copy(product_.Root() + L"\\linked"), 1);

  EXPECT_TRUE(Exists(linked + L"\\App\\Sub\\new.txt"));
  EXPECT_TRUE(Exists(linked + L"\\new.txt"));
}

TEST_F(HoldingFolderTest, MayBeAnyWhenThePlaceOfTheSourceIsNotToBeHad) {
  WriteFileBytes(staged_ + L"\\Sub\\new.txt", "N");
  WriteFileBytes(installed_ + L"\\Sub\\old.txt", "O");
  FakeListing listing;
  listing.LeadElsewhere(staged_ + L"\\Sub", L"");

  EXPECT_EQ(Copy(installed_), 1);

  EXPECT_THAT(ListTree(installed_ + L"\\Sub"), ElementsAre(L"new.txt", L"old.txt"));
}

// It is the link that is deleted, and nothing behind it.
TEST_F(HoldingFolderTest, IsNotALinkThatLeadsToTheSource) {
  WriteFileBytes(staged_ + L"\\Sub\\new.txt", "N");
  CreateFolders(installed_ + L"\\Sub");
  FakeListing listing;
  listing.Disguise(installed_ + L"\\Sub", FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_SYMLINK);

  EXPECT_EQ(Copy(installed_), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy folder from {base}\\Updater\\App to {base}",
                          L"2|Delete Dir : {base}\\Sub",
                          L"2|Copy folder from {base}\\Updater\\App\\Sub to "
                          L"{base}\\Sub",
                          L"2|Copy file from {base}\\Updater\\App\\Sub\\new.txt to "
                          L"{base}\\Sub\\new.txt"));
  EXPECT_THAT(ListTree(installed_ + L"\\Sub"), ElementsAre(L"new.txt"));
}

}  // namespace
}  // namespace nhupdate_test
