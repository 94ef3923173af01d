#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/existence.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"
#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/support/quiet_desktop.h"

namespace nhupdate_test {
namespace {

using nhupdate::Exists;
using testing::ElementsAre;

class InstallCopyTest : public testing::Test {
 protected:
  InstallCopyTest() {
    product_.Start();
    product_.ForgetRecords();
  }

  InstalledProduct product_;
  const std::wstring base_ = product_.Base();
  const std::wstring app_ = product_.App();
};

TEST_F(InstallCopyTest, DeletesTheOldFilesThenBringsTheNewOnesTwice) {
  const QuietDesktop desktop;
  WriteFileBytes(base_ + L"\\a.exe", "old");
  WriteFileBytes(base_ + L"\\gone.exe", "old");
  WriteFileBytes(base_ + L"\\Sub\\old.dll", "old");
  WriteFileBytes(base_ + L"\\Own\\own.txt", "own");
  WriteFileBytes(app_ + L"\\a.exe", "new");
  WriteFileBytes(app_ + L"\\b.exe", "new");
  WriteFileBytes(app_ + L"\\Sub\\new.dll", "new");

  EXPECT_EQ(product_.Manager().InstallCopy(), 1);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Delete OK : {base}\\a.exe", L"2|Delete OK : {base}\\gone.exe",
                          L"2|Copy OK : {base}\\Updater\\App\\a.exe => {base}\\a.exe",
                          L"2|Copy OK : {base}\\Updater\\App\\b.exe => {base}\\b.exe",
                          L"2|Copy folder from {base}\\Updater\\App to {base}",
                          L"2|Copy file from {base}\\Updater\\App\\a.exe to {base}\\a.exe",
                          L"2|Copy file from {base}\\Updater\\App\\b.exe to {base}\\b.exe",
                          L"2|Delete Dir : {base}\\Sub",
                          L"2|Copy folder from {base}\\Updater\\App\\Sub to {base}\\Sub",
                          L"2|Copy file from {base}\\Updater\\App\\Sub\\new.dll to "
                          L"{base}\\Sub\\new.dll",
                          L"2|Copy complete."));
  EXPECT_FALSE(Exists(base_ + L"\\gone.exe"));
  EXPECT_EQ(ReadFileBytes(base_ + L"\\a.exe"), "new");
  EXPECT_THAT(ListTree(base_ + L"\\Sub"), ElementsAre(L"new.dll"));
  EXPECT_TRUE(Exists(base_ + L"\\Own\\own.txt"));
  EXPECT_TRUE(desktop.Boxes().empty());
  EXPECT_TRUE(desktop.Sleeps().empty());
}

TEST_F(InstallCopyTest, CopiesOnlyTheFilesOfTheTopLevelTwice) {
  const QuietDesktop desktop;
  WriteFileBytes(app_ + L"\\a.exe", "new");
  WriteFileBytes(app_ + L"\\Sub\\b.dll", "new");
  std::vector<std::wstring> copied;
  INTERPOSER(CopyFileW) copy([&](const wchar_t* source, const wchar_t* target, BOOL fail_if_there) {
    EXPECT_FALSE(fail_if_there);
    copied.push_back(target);
    return copy.Original()(source, target, fail_if_there);
  });

  EXPECT_EQ(product_.Manager().InstallCopy(), 1);

  EXPECT_THAT(copied, ElementsAre(base_ + L"\\a.exe", base_ + L"\\a.exe", base_ + L"\\Sub\\b.dll"));
}

TEST_F(InstallCopyTest, SucceedsWithNothingStaged) {
  const QuietDesktop desktop;

  EXPECT_EQ(product_.Manager().InstallCopy(), 1);

  EXPECT_THAT(
      product_.Transcript(),
      ElementsAre(L"2|Copy folder from {base}\\Updater\\App to {base}", L"2|Copy complete."));
}

TEST_F(InstallCopyTest, EndsAtAnInstalledFileThatCannotBeDeleted) {
  const QuietDesktop desktop;
  WriteFileBytes(base_ + L"\\a.exe", "old");
  WriteFileBytes(base_ + L"\\held 100%s.exe", "old");
  WriteFileBytes(base_ + L"\\z.exe", "old");
  WriteFileBytes(app_ + L"\\a.exe", "new");
  const HeldFile lock(base_ + L"\\held 100%s.exe");

  EXPECT_EQ(product_.Manager().InstallCopy(), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Delete OK : {base}\\a.exe",
                          L"4|Fail to delete (32) : {base}\\held 100%s.exe"));
  EXPECT_THAT(desktop.Boxes(), ElementsAre(CopyErrorBox(base_ + L"\\held 100%s.exe")));
  EXPECT_FALSE(Exists(base_ + L"\\a.exe"));
  EXPECT_TRUE(Exists(base_ + L"\\z.exe"));
  EXPECT_TRUE(desktop.Sleeps().empty());
}

TEST_F(InstallCopyTest, DoesNotClearReadOnlyAttributesOfTheOldFiles) {
  const QuietDesktop desktop;
  WriteFileBytes(base_ + L"\\a.exe", "old");
  ::SetFileAttributesW((base_ + L"\\a.exe").c_str(), FILE_ATTRIBUTE_READONLY);

  EXPECT_EQ(product_.Manager().InstallCopy(), 0);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"4|Fail to delete (5) : {base}\\a.exe"));
  EXPECT_THAT(desktop.Boxes(), ElementsAre(CopyErrorBox(base_ + L"\\a.exe")));
}

TEST_F(InstallCopyTest, PassesOverAnInstalledFileThatIsGoneMeanwhile) {
  const QuietDesktop desktop;
  WriteFileBytes(base_ + L"\\a.exe", "old");
  WriteFileBytes(base_ + L"\\b.exe", "old");
  WriteFileBytes(base_ + L"\\c.exe", "old");
  INTERPOSER(DeleteFileW) delete_file([&](const wchar_t* file) {
    if (file == base_ + L"\\a.exe") {
      delete_file.Original()((base_ + L"\\b.exe").c_str());
    }
    return delete_file.Original()(file);
  });

  EXPECT_EQ(product_.Manager().InstallCopy(), 1);

  EXPECT_THAT(
      product_.Transcript(),
      ElementsAre(L"2|Delete OK : {base}\\a.exe", L"2|Delete OK : {base}\\c.exe",
                  L"2|Copy folder from {base}\\Updater\\App to {base}", L"2|Copy complete."));
  EXPECT_EQ(delete_file.Calls(), 2);
}

TEST_F(InstallCopyTest, EndsAtAStagedFileThatCannotBeCopied) {
  const QuietDesktop desktop;
  WriteFileBytes(app_ + L"\\a.exe", "new");
  WriteFileBytes(app_ + L"\\b.exe", "new");
  WriteFileBytes(app_ + L"\\c.exe", "new");
  const HeldFile lock(app_ + L"\\b.exe");

  EXPECT_EQ(product_.Manager().InstallCopy(), 0);

  EXPECT_THAT(product_.Transcript(),
              ElementsAre(L"2|Copy OK : {base}\\Updater\\App\\a.exe => {base}\\a.exe",
                          L"4|Fail to copy (32) : {base}\\Updater\\App\\b.exe => "
                          L"{base}\\b.exe"));
  EXPECT_THAT(desktop.Boxes(), ElementsAre(CopyErrorBox(base_ + L"\\b.exe")));
  EXPECT_FALSE(Exists(base_ + L"\\c.exe"));
  EXPECT_TRUE(desktop.Sleeps().empty());
}

TEST_F(InstallCopyTest, ShowsTheTextsOfTheStringTable) {
  const QuietDesktop desktop;
  const std::wstring strings = product_.Root() + L"\\strings.json";
  WriteFileBytes(strings, R"({"KEY_UPDATE_TITLE": "The title", "KEY_FAIL_COMMON_ERROR": "Oh %s"})");
  product_.Manager().LoadStrings(strings);
  WriteFileBytes(base_ + L"\\a.exe", "old");
  const HeldFile lock(base_ + L"\\a.exe");

  EXPECT_EQ(product_.Manager().InstallCopy(), 0);

  EXPECT_THAT(desktop.Boxes(),
              ElementsAre(ShownBox{L"Oh %s\n" + base_ + L"\\a.exe", L"The title", 0x40010, true}));
}

// A release may bring files for the folder in which it is staged.
TEST_F(InstallCopyTest, InstallsAReleaseWithAnUpdaterFolderOfItsOwn) {
  const QuietDesktop desktop;
  WriteFileBytes(app_ + L"\\Updater\\Updater.exe", "new");
  WriteFileBytes(app_ + L"\\zz\\last.dll", "new");
  WriteFileBytes(base_ + L"\\Updater\\Updater.exe", "old");
  WriteFileBytes(base_ + L"\\Updater\\Config\\ut.ini", "ini");

  EXPECT_EQ(product_.Manager().InstallCopy(), 1);

  EXPECT_EQ(ReadFileBytes(base_ + L"\\Updater\\Updater.exe"), "new");
  EXPECT_TRUE(Exists(base_ + L"\\Updater\\Config\\ut.ini"));
  EXPECT_TRUE(Exists(base_ + L"\\zz\\last.dll"));
  EXPECT_TRUE(Exists(app_ + L"\\zz\\last.dll"));
}

}  // namespace
}  // namespace nhupdate_test
