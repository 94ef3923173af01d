#include "install/install_copy.h"

#include "tests/support/failing_copy.h"
#include "tests/support/fake_listing.h"
#include "tests/support/quiet_desktop.h"
#include "tests/unit/install/install_test.h"

namespace nhupdate_test {
namespace {

class InstallCopyTest : public InstallTest {
 protected:
  InstallCopyTest() { CreateFolders(app_); }

  bool Install() { return InstallCopy(folders_, strings_, log_.Log(), failed_path_); }

  // The box that tells what stays in the way.
  static ShownBox BoxAbout(const std::wstring& path) {
    return ErrorBoxOf(L"Oh %s\n" + path, L"The title");
  }

  const StringTable strings_ = {{L"KEY_UPDATE_TITLE", L"The title"},
                                {L"KEY_FAIL_COMMON_ERROR", L"Oh %s"}};
  std::wstring failed_path_;
  const QuietDesktop desktop_;
};

TEST_F(InstallCopyTest, DeletesTheOldFilesThenBringsTheNewOnesTwice) {
  WriteFiles(base_, {L"\\a.exe", L"\\gone.exe", L"\\Sub\\old.dll", L"\\Own\\own.txt"}, "old");
  WriteFiles(app_, {L"\\a.exe", L"\\z.exe", L"\\Sub\\new.dll"}, "new");
  std::vector<BOOL> fails_if_there;
  const INTERPOSER(CopyFileW) copy([&](const wchar_t*, const wchar_t*, BOOL fail_if_there) {
    fails_if_there.push_back(fail_if_there);
  });

  EXPECT_TRUE(Install());

  EXPECT_THAT(log_.Records(),
              ElementsAre(L"2|Delete OK : {base}\\a.exe", L"2|Delete OK : {base}\\gone.exe",
                          L"2|Copy OK : {base}\\Updater\\App\\a.exe => {base}\\a.exe",
                          L"2|Copy OK : {base}\\Updater\\App\\z.exe => {base}\\z.exe",
                          L"2|Copy folder from {base}\\Updater\\App to {base}",
                          L"2|Copy file from {base}\\Updater\\App\\a.exe to {base}\\a.exe",
                          L"2|Delete Dir : {base}\\Sub",
                          L"2|Copy folder from {base}\\Updater\\App\\Sub to {base}\\Sub",
                          L"2|Copy file from {base}\\Updater\\App\\Sub\\new.dll to "
                          L"{base}\\Sub\\new.dll",
                          L"2|Copy file from {base}\\Updater\\App\\z.exe to {base}\\z.exe",
                          L"2|Copy complete."));
  EXPECT_EQ(fails_if_there, std::vector<BOOL>(5, FALSE));
  EXPECT_FALSE(Exists(base_ + L"\\gone.exe"));
  EXPECT_EQ(ReadFileBytes(base_ + L"\\a.exe"), "new");
  EXPECT_THAT(ListTree(base_ + L"\\Sub"), ElementsAre(L"new.dll"));
  EXPECT_TRUE(Exists(base_ + L"\\Own\\own.txt"));
  EXPECT_THAT(desktop_.Boxes(), IsEmpty());
  EXPECT_THAT(desktop_.Sleeps(), IsEmpty());
}

TEST_F(InstallCopyTest, SucceedsWithNothingStaged) {
  RemoveTree(app_);

  EXPECT_TRUE(Install());

  EXPECT_THAT(log_.Records(), ElementsAre(L"2|Copy folder from {base}\\Updater\\App to {base}",
                                          L"2|Copy complete."));
}

TEST_F(InstallCopyTest, EndsAtAnInstalledFileThatCannotBeDeleted) {
  WriteFiles(base_, {L"\\a.exe", L"\\held 100%s.exe", L"\\z.exe"});
  const HeldFile lock(base_ + L"\\held 100%s.exe");

  EXPECT_FALSE(Install());

  EXPECT_THAT(log_.Records(), ElementsAre(L"2|Delete OK : {base}\\a.exe",
                                          L"4|Fail to delete (32) : {base}\\held 100%s.exe"));
  EXPECT_THAT(desktop_.Boxes(), ElementsAre(BoxAbout(base_ + L"\\held 100%s.exe")));
  EXPECT_THAT(desktop_.Sleeps(), IsEmpty());
  EXPECT_TRUE(Exists(base_ + L"\\z.exe"));
}

// The box may stand there for days, and the log has to tell meanwhile why.
TEST_F(InstallCopyTest, TellsTheLogBeforeTheUser) {
  WriteFiles(base_, {L"\\a.exe"});
  const HeldFile lock(base_ + L"\\a.exe");
  std::wstring last_record;
  INTERPOSER(MessageBoxW) box([&](auto...) {
    last_record = log_.Records().back();
    return IDOK;
  });

  EXPECT_FALSE(Install());

  EXPECT_EQ(last_record, L"4|Fail to delete (32) : {base}\\a.exe");
}

TEST_F(InstallCopyTest, DoesNotClearReadOnlyAttributesOfTheOldFiles) {
  WriteFileBytes(base_ + L"\\a.exe", "old");
  ::SetFileAttributesW((base_ + L"\\a.exe").c_str(), FILE_ATTRIBUTE_READONLY);

  EXPECT_FALSE(Install());

  EXPECT_THAT(log_.Records(), ElementsAre(L"4|Fail to delete (5) : {base}\\a.exe"));
  EXPECT_THAT(desktop_.Boxes(), ElementsAre(BoxAbout(base_ + L"\\a.exe")));
}

TEST_F(InstallCopyTest, PassesOverAnInstalledFileThatIsGoneMeanwhile) {
  WriteFiles(base_, {L"\\a.exe", L"\\b.exe", L"\\c.exe"});
  const INTERPOSER(DeleteFileW) delete_file([&](const wchar_t* file) {
    if (file == base_ + L"\\a.exe") {
      delete_file.Original()((base_ + L"\\b.exe").c_str());
    }
  });

  EXPECT_TRUE(Install());

  EXPECT_THAT(
      log_.Records(),
      ElementsAre(L"2|Delete OK : {base}\\a.exe", L"2|Delete OK : {base}\\c.exe",
                  L"2|Copy folder from {base}\\Updater\\App to {base}", L"2|Copy complete."));
  EXPECT_EQ(delete_file.Calls(), 2);
}

TEST_F(InstallCopyTest, EndsAtAStagedFileThatCannotBeCopied) {
  WriteFiles(app_, {L"\\a.exe", L"\\b.exe", L"\\c.exe"});
  const HeldFile lock(app_ + L"\\b.exe");

  EXPECT_FALSE(Install());

  EXPECT_THAT(log_.Records(),
              ElementsAre(L"2|Copy OK : {base}\\Updater\\App\\a.exe => {base}\\a.exe",
                          L"4|Fail to copy (32) : {base}\\Updater\\App\\b.exe => {base}\\b.exe"));
  EXPECT_THAT(desktop_.Boxes(), ElementsAre(BoxAbout(base_ + L"\\b.exe")));
  EXPECT_THAT(desktop_.Sleeps(), IsEmpty());
  EXPECT_FALSE(Exists(base_ + L"\\c.exe"));
}

// A release may bring files for the folder in which it is staged.
TEST_F(InstallCopyTest, InstallsAReleaseWithAnUpdaterFolderOfItsOwn) {
  WriteFiles(app_, {L"\\Updater\\Updater.exe", L"\\zz\\last.dll"}, "new");
  WriteFiles(base_, {L"\\Updater\\Updater.exe", L"\\Updater\\Config\\ut.ini"}, "old");

  EXPECT_TRUE(Install());

  EXPECT_EQ(ReadFileBytes(base_ + L"\\Updater\\Updater.exe"), "new");
  EXPECT_TRUE(Exists(base_ + L"\\Updater\\Config\\ut.ini"));
  EXPECT_TRUE(Exists(base_ + L"\\zz\\last.dll"));
  EXPECT_TRUE(Exists(app_ + L"\\zz\\last.dll"));
}

TEST_F(InstallCopyTest, TellsAfterTheLastAttemptWhatTheFolderCopyCouldNotCopy) {
  WriteFiles(app_, {L"\\Sub\\a.dll", L"\\Sub\\z.dll"});
  const std::wstring first = base_ + L"\\Sub\\a.dll";
  const std::wstring last = base_ + L"\\Sub\\z.dll";
  const FailingCopy copy(ERROR_DISK_FULL, [&](const std::wstring& target) {
    EXPECT_THAT(desktop_.Boxes(), IsEmpty());
    const bool is_last_attempt = desktop_.Sleeps().size() == 9;
    return target == (is_last_attempt ? last : first);
  });

  EXPECT_FALSE(Install());

  EXPECT_EQ(failed_path_, last);
  EXPECT_EQ(desktop_.Sleeps(), std::vector<DWORD>(10, 3000));
  EXPECT_THAT(desktop_.Boxes(), ElementsAre(BoxAbout(last)));
}

// The installed files are gone by then, so it must not look like a success.
TEST_F(InstallCopyTest, FailsWhenTheStagedFolderCannotBeListedAtAll) {
  WriteFileBytes(base_ + L"\\a.exe", "old");
  FakeListing listing;
  listing.Forbid(app_, ERROR_ACCESS_DENIED);

  EXPECT_FALSE(Install());

  EXPECT_EQ(log_.Records().front(), L"2|Delete OK : {base}\\a.exe");
  EXPECT_THAT(log_.Records(), Contains(L"4|Fail to copy file = 5").Times(10));
  EXPECT_EQ(log_.Records().back(), L"4|Fail to copy folder.");
  EXPECT_THAT(desktop_.Boxes(), ElementsAre(BoxAbout(base_)));
}

TEST_F(InstallCopyTest, NeitherLooksAtNorTouchesTheDiskWithoutABaseFolder) {
  WriteFiles(base_, {L"\\a.exe", L"\\Sub\\important.txt"});
  WriteFiles(app_, {L"\\b.exe", L"\\Sub\\new.dll"});
  const Lines before = ListTree(root_);

  for (const ProductFolders& folders : FoldersWithoutBase()) {
    const FakeListing listing;
    INTERPOSER(DeleteFileW) delete_file(Answers(TRUE));
    INTERPOSER(CopyFileW) copy(Answers(TRUE));

    EXPECT_TRUE(InstallCopy(folders, strings_, log_.Log(), failed_path_));

    EXPECT_THAT(listing.Patterns(), IsEmpty());
    EXPECT_EQ(delete_file.Calls(), 0);
    EXPECT_EQ(copy.Calls(), 0);
  }
  EXPECT_THAT(log_.Records(), IsEmpty());
  EXPECT_EQ(ListTree(root_), before);
}

}  // namespace
}  // namespace nhupdate_test
