// Where folders go by several names, or are links: what is copied is never deleted, and nobody
// else's folder is read, deleted or written to.

#include <gmock/gmock.h>

#include "tests/support/current_folder.h"
#include "tests/support/fake_link.h"
#include "tests/support/fake_listing.h"
#include "tests/support/folder_link.h"
#include "tests/unit/install/folder_copy_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

// A sub-folder of the destination that holds the source of the copy.
class HoldingFolderTest : public FolderCopyTest,
                          public testing::WithParamInterface<const wchar_t*> {
 protected:
  HoldingFolderTest() { CreateFolders(app_); }
};

TEST_P(HoldingFolderTest, IsCopiedIntoButNeverDeleted) {
  const std::wstring name = GetParam();
  WriteFileBytes(app_ + L"\\" + name + L"\\Updater.exe", "new");
  WriteFileBytes(base_ + L"\\Updater\\Updater.exe", "old");
  WriteFileBytes(base_ + L"\\Updater\\Config\\ut.ini", "ini");

  EXPECT_TRUE(copy_.Copy(base_, app_, kReplacing));

  EXPECT_THAT(
      log_.Records(),
      ElementsAre(L"2|Copy folder from {base}\\Updater\\App to {base}",
                  L"2|Copy folder from {base}\\Updater\\App\\" + name + L" to {base}\\" + name,
                  L"2|Copy file from {base}\\Updater\\App\\" + name + L"\\Updater.exe to {base}\\" +
                      name + L"\\Updater.exe"));
  EXPECT_EQ(ReadFileBytes(base_ + L"\\Updater\\Updater.exe"), "new");
  EXPECT_EQ(ReadFileBytes(base_ + L"\\Updater\\Config\\ut.ini"), "ini");
}

INSTANTIATE_TEST_SUITE_P(InAnyLetterCase, HoldingFolderTest,
                         testing::Values(L"Updater", L"UPDATER", L"updater"));

TEST_F(HoldingFolderTest, IsNotOneWhoseNameOnlyBeginsAlike) {
  WriteFileBytes(app_ + L"\\Up\\new.txt", "N");
  WriteFileBytes(base_ + L"\\Up\\old.txt", "O");

  EXPECT_TRUE(copy_.Copy(base_, app_, kReplacing));

  EXPECT_THAT(ListTree(base_ + L"\\Up"), ElementsAre(L"new.txt"));
}

// To a program in C:\NHUpdateManager the installed program's folder is \NHUpdateManager, which is
// its own.
TEST_F(HoldingFolderTest, IsRecognisedAsSeenFromTheCurrentDrive) {
  const CurrentFolder drive(source_.substr(0, 3));
  WriteFileBytes(source_ + L"\\Config\\strings.json", "S");

  EXPECT_FALSE(copy_.Copy(source_.substr(2), source_, kReplacing));  // no file onto itself

  EXPECT_EQ(ReadFileBytes(source_ + L"\\Config\\strings.json"), "S");
  EXPECT_EQ(log_.Records().size(), 4u);
  EXPECT_EQ(log_.Records().back(), FailureLine(32));
}

// {root}\to leads to {root}\elsewhere, in whose sub-folder "b" the source lies.
TEST_F(HoldingFolderTest, IsRecognisedBehindALinkFurtherUp) {
  const std::wstring source = root_ + L"\\elsewhere\\b\\staged";
  WriteFileBytes(source + L"\\b\\new.txt", "N");
  const FakeLink link(target_, root_ + L"\\elsewhere");

  EXPECT_TRUE(copy_.Copy(target_, source, kReplacing));

  EXPECT_THAT(ListTree(root_ + L"\\elsewhere"),
              ElementsAre(L"b\\", L"b\\new.txt", L"b\\staged\\", L"b\\staged\\b\\",
                          L"b\\staged\\b\\new.txt"));
}

TEST_F(HoldingFolderTest, MayBeAnyWhenThePlaceOfTheSourceIsNotToBeHad) {
  WriteFileBytes(source_ + L"\\b\\new.txt", "N");
  WriteFileBytes(target_ + L"\\b\\old.txt", "O");
  FakeListing listing;
  listing.LeadElsewhere(source_ + L"\\b", L"");

  EXPECT_TRUE(Copy(kReplacing));

  EXPECT_THAT(ListTree(target_), ElementsAre(L"b\\", L"b\\new.txt", L"b\\old.txt"));
}

class LinkedFolderCopyTest : public FolderCopyTest {
 protected:
  LinkedFolderCopyTest() { WriteFileBytes(elsewhere_ + L"\\inner\\secret.txt", "S"); }
  ~LinkedFolderCopyTest() override {
    EXPECT_THAT(ListTree(elsewhere_), ElementsAre(L"inner\\", L"inner\\secret.txt"));
  }

  const std::wstring elsewhere_ = root_ + L"\\elsewhere";
};

TEST_F(LinkedFolderCopyTest, MakesAnEmptyFolderOfALinkInTheSource) {
  for (const DWORD tag : kLinkTags) {
    log_.ForgetRecords();
    const FakeLink link(source_ + L"\\link", elsewhere_, tag);
    const FakeListing listing;

    EXPECT_TRUE(Copy());

    EXPECT_THAT(listing.Patterns(), ElementsAre(source_ + L"\\*.*"));
    EXPECT_THAT(log_.Records(), ElementsAre(FolderLine(), FolderLine(L"\\link")));
    EXPECT_THAT(ListTree(target_), ElementsAre(L"link\\"));
  }
}

TEST_F(LinkedFolderCopyTest, IsNotCopiedIntoItselfByALinkInTheSourceThatLeadsToIt) {
  WriteFileBytes(source_ + L"\\file", "x");
  const FakeLink link(source_ + L"\\loop", source_);

  EXPECT_TRUE(Copy());

  EXPECT_THAT(ListTree(target_), ElementsAre(L"file", L"loop\\"));
}

// Placeholders of cloud storage are folders like any other.
TEST_F(LinkedFolderCopyTest, WalksThroughReparsePointsThatAreNoLinks) {
  WriteFileBytes(source_ + L"\\cloud\\file", "x");
  FakeListing listing;
  listing.Disguise(source_ + L"\\cloud", FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_CLOUD);

  EXPECT_TRUE(Copy());

  EXPECT_THAT(ListTree(target_), ElementsAre(L"cloud\\", L"cloud\\file"));
}

TEST_F(LinkedFolderCopyTest, PutsAFolderIntoThePlaceOfALinkInTheDestination) {
  for (const bool is_replacing : {true, false}) {
    log_.ForgetRecords();
    WriteFileBytes(source_ + L"\\b\\new.txt", "N");
    RemoveTree(target_);
    const FakeLink link(target_ + L"\\b", elsewhere_);

    EXPECT_TRUE(Copy({.delete_existing_sub_folders = is_replacing}));

    EXPECT_EQ(log_.Records(),
              is_replacing ? (Lines{FolderLine(), DeletionLine(L"\\b"), FolderLine(L"\\b"),
                                    FileLine(L"\\b\\new.txt")})
                           : (Lines{FolderLine(), FolderLine(L"\\b"), FileLine(L"\\b\\new.txt")}));
    EXPECT_FALSE(link.IsThere());
    EXPECT_THAT(ListTree(target_), ElementsAre(L"b\\", L"b\\new.txt"));
  }
}

TEST_F(LinkedFolderCopyTest, ReplacesALinkAtAnyDepthOfTheDestination) {
  WriteFileBytes(source_ + L"\\a\\b\\new.txt", "N");
  const FakeLink link(target_ + L"\\a\\b", elsewhere_);

  EXPECT_TRUE(Copy());

  EXPECT_THAT(ListTree(target_), ElementsAre(L"a\\", L"a\\b\\", L"a\\b\\new.txt"));
}

TEST_F(LinkedFolderCopyTest, ReplacesALinkBesideAFolderOfTheDestination) {
  WriteFiles(source_, {L"\\a\\new.txt", L"\\b\\new.txt"});
  const FakeLink link(target_ + L"\\b", elsewhere_);

  EXPECT_TRUE(Copy());

  EXPECT_THAT(ListTree(target_), ElementsAre(L"a\\", L"a\\new.txt", L"b\\", L"b\\new.txt"));
}

// A link to the source isn't the folder that holds it.
TEST_F(LinkedFolderCopyTest, ReplacesALinkInTheDestinationThatLeadsToTheSource) {
  WriteFileBytes(source_ + L"\\b\\new.txt", "N");
  const FakeLink link(target_ + L"\\b", source_ + L"\\b");

  EXPECT_TRUE(Copy(kReplacing));

  EXPECT_FALSE(link.IsThere());
  EXPECT_THAT(log_.Records(), ElementsAre(FolderLine(), DeletionLine(L"\\b"), FolderLine(L"\\b"),
                                          FileLine(L"\\b\\new.txt")));
  EXPECT_THAT(ListTree(source_), ElementsAre(L"b\\", L"b\\new.txt"));
  EXPECT_THAT(ListTree(target_), ElementsAre(L"b\\", L"b\\new.txt"));
}

// The destination may be reached by links, but within the product none is followed to delete.
TEST_F(LinkedFolderCopyTest, DeletesNothingBehindALinkInTheProductThatLeadsToTheDestination) {
  WriteFileBytes(source_ + L"\\inner\\new.txt", "N");
  const FakeLink link(base_ + L"\\Updater", elsewhere_);

  EXPECT_TRUE(copy_.Copy(base_ + L"\\Updater", source_, kReplacing));

  EXPECT_TRUE(::DeleteFileW((elsewhere_ + L"\\inner\\new.txt").c_str()));
}

TEST_F(LinkedFolderCopyTest, FailsAtALinkInTheDestinationThatStays) {
  WriteFileBytes(source_ + L"\\b\\new.txt", "N");
  FakeLink link(target_ + L"\\b", elsewhere_);
  link.RefuseDeletion(ERROR_ACCESS_DENIED);

  ExpectFailure({FolderLine(), FolderLine(L"\\b"), FailureLine(5)});

  EXPECT_EQ(failed_path_, target_ + L"\\b");
}

// Windows drops all dots at the end of a path, and one at the end of each name in it: "x.." is read
// as "x", which is no link, and what is in it is looked for in "x.".
TEST_F(LinkedFolderCopyTest, FailsAtANameThatWindowsReadsOtherwise) {
  const std::wstring exact_source = L"\\\\?\\" + source_;
  const std::wstring link = L"\\\\?\\" + target_ + L"\\x.";
  WriteFiles(source_, {L"\\a\\new.txt", L"\\x\\new.txt"});
  for (const wchar_t* name : {L"\\x.", L"\\x.."}) {
    ASSERT_TRUE(::CreateDirectoryW((exact_source + name).c_str(), nullptr));
  }
  WriteFiles(exact_source, {L"\\x.\\new.txt"});
  CreateFolders(target_);
  CreateLink(link, elsewhere_);

  EXPECT_FALSE(Copy());

  RemoveFolderLink(link);
  RemoveTree(exact_source);
}

// In a longer path names are taken as they stand, so that the destination is where it should be. In
// the source "x" is held, which is no link, and "x." is read.
TEST_F(LinkedFolderCopyTest, ReadsNothingByANameThatWindowsReadsOtherwise) {
  const std::wstring exact_source = L"\\\\?\\" + source_;
  const std::wstring link = exact_source + L"\\x.";
  const std::wstring target = LongPathBelow(root_);
  const std::wstring exact_target = L"\\\\?\\" + target;
  CreateFolders(source_ + L"\\x");
  CreateFolders(target);
  ASSERT_TRUE(::CreateDirectoryW((exact_source + L"\\x..").c_str(), nullptr));
  CreateLink(link, elsewhere_);
  {
    FakeListing listing;
    listing.Disguise(source_ + L"\\x.", FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_MOUNT_POINT);

    EXPECT_FALSE(copy_.Copy(target, source_, {}));
  }

  EXPECT_EQ(failed_path_, target + L"\\x..");
  EXPECT_THAT(ListTree(exact_target + L"\\x.."), testing::IsEmpty());
  RemoveTree(exact_target);
  RemoveFolderLink(link);
  RemoveTree(exact_source);
}

// A user can have a folder of his tell letter cases apart. What lies in "A" doesn't keep "a" from
// being turned into a link.
TEST_F(LinkedFolderCopyTest, LooksAtEachFolderUntilOneLiesInTheDestinationInTheSameLetterCase) {
  WriteFiles(source_, {L"\\a\\new.txt", L"\\b\\new.txt"});
  FakeListing windows;
  windows.LeadElsewhere(target_, L"\\Device\\V1\\to");
  windows.LeadElsewhere(target_ + L"\\a", L"\\Device\\V1\\to\\A");
  windows.LeadElsewhere(target_ + L"\\b", L"\\Device\\V1\\Windows");

  EXPECT_FALSE(Copy());

  EXPECT_EQ(failed_path_, target_ + L"\\b");
}

// Whoever may write to the destination can be quick.
TEST_F(LinkedFolderCopyTest, FailsAtALinkThatComesBackAsSoonAsItIsReplaced) {
  WriteFileBytes(source_ + L"\\b\\new.txt", "N");
  const FakeLink first(target_ + L"\\b", elsewhere_);
  const FakeLink second(target_ + L"\\b", elsewhere_, [&](const std::wstring& path) {
    return !first.IsThere() && path == target_ + L"\\b";
  });

  EXPECT_FALSE(Copy());

  EXPECT_TRUE(second.IsThere());
  EXPECT_EQ(log_.Records().back(), FailureLine(ERROR_CANT_ACCESS_FILE));
}

// The folder above is held while it is copied into.
TEST_F(LinkedFolderCopyTest, KeepsTheFoldersOfTheDestinationInTheirPlaceMeanwhile) {
  WriteFileBytes(source_ + L"\\b\\new.txt", "N");
  const FakeLink link(target_ + L"\\b", elsewhere_,
                      [&](const std::wstring& path) { return path == source_ + L"\\b\\new.txt"; });

  EXPECT_TRUE(Copy());

  EXPECT_FALSE(link.IsThere());
  EXPECT_THAT(ListTree(target_), ElementsAre(L"b\\", L"b\\new.txt"));
}

// A folder whose place can't be had might lie elsewhere, so it keeps nothing in its place.
TEST_F(LinkedFolderCopyTest, LooksAtEachFolderUntilOneIsKnownToLieInTheDestination) {
  WriteFiles(source_, {L"\\a\\new.txt", L"\\b\\new.txt"});
  FakeListing windows;
  windows.LeadElsewhere(target_ + L"\\a", L"");
  windows.LeadElsewhere(target_ + L"\\b", L"\\Device\\V1\\Windows");

  EXPECT_FALSE(Copy());

  EXPECT_EQ(failed_path_, target_ + L"\\b");
}

// Only an empty folder can be turned into a link where it is. As long as one in it stays, no other
// has to be seen where it lies.
TEST_F(LinkedFolderCopyTest, KeepsTheFirstFolderOfTheDestinationUntilTheOthersAreCopied) {
  WriteFiles(source_, {L"\\a\\new.txt", L"\\b\\new.txt", L"\\c\\new.txt"});
  const std::wstring first = target_ + L"\\a";
  INTERPOSER(GetFinalPathNameByHandleW) final_path([](auto...) {});
  int copied = 0;
  INTERPOSER(CopyFileW) copy([&](auto...) {
    ++copied;
    ::DeleteFileW((first + L"\\new.txt").c_str());
    EXPECT_FALSE(::RemoveDirectoryW(first.c_str()));
    EXPECT_FALSE(::MoveFileW(first.c_str(), (root_ + L"\\moved").c_str()));
  });

  EXPECT_TRUE(Copy());

  EXPECT_EQ(copied, 3);
  EXPECT_EQ(final_path.Calls(), 2);  // the destination and its first folder
  EXPECT_TRUE(::DeleteFileW((target_ + L"\\c\\new.txt").c_str()));
  EXPECT_TRUE(::RemoveDirectoryW(first.c_str()));
}

}  // namespace
}  // namespace nhupdate_test
