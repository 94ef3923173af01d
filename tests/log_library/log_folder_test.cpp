// Which folders a log can be started in. Every user may write to the folders above the log folder
// too, and could lead an elevated writer elsewhere from there.

#include "log_library/log_folder.h"

#include "tests/log_library/test_log.h"
#include "tests/support/current_folder.h"
#include "tests/support/fence.h"
#include "tests/support/folder_link.h"
#include "tests/support/throwaway_machine.h"

namespace nhupdate_test {
namespace {

TEST(LogStartFolderTest, ARelativeFolderStaysTheOneItWas) {
  TestLog log(kSmallFiles);
  CreateFolders(log.Outside(L"elsewhere\\Log"));
  const CurrentFolder current(log.Outside(L""));

  const int result = log.Start(log.Settings(), L"Log");
  const CurrentFolder elsewhere(log.Outside(L"elsewhere"));
  log.Write(kFullFile);
  log.Write(L"next");

  EXPECT_EQ(result, 0);
  EXPECT_THAT(log.RotatedTexts(1), ElementsAre(kFullFileText));
  EXPECT_THAT(log.Texts(), ElementsAre("next"));
  EXPECT_THAT(ListTree(log.Outside(L"elsewhere\\Log")), IsEmpty());
}

TEST(LogStartFolderTest, TheRootOfADriveIsAFolderLikeAnyOther) {
  if (!IsThrowawayMachine()) {
    GTEST_SKIP() << kMachineIsKept;
  }
  const AllowOutside open("a root is no folder of the test's own");
  TestLog log(kSmallFiles);
  const std::wstring root = log.Folder().substr(0, 3);
  const std::wstring current = root + L"NHUpdateManager.log";
  const std::wstring rotated = root + L"NHUpdateManager.1.log";
  ASSERT_FALSE(Exists(current) || Exists(rotated));
  const CurrentFolder drives_own(log.Outside(L""));  // which is what "C:" alone means

  const int result = log.Start(log.Settings(), root);
  log.Write(kFullFile);
  log.Write(L"next");
  log.Stop();

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(rotated), ElementsAre(kFullFileText));
  EXPECT_THAT(ReadTexts(current), ElementsAre("next"));
  EXPECT_TRUE(::DeleteFileW(rotated.c_str()));
  EXPECT_TRUE(::DeleteFileW(current.c_str()));
}

TEST(LogStartFolderTest, WhatCantBeFoundOutOfTheFolderMakesTheStartFail) {
  TestLog log;
  {
    const INTERPOSER(GetFinalPathNameByHandleW) place(log.Module(),
                                                      Answers(DWORD{0}, ERROR_ACCESS_DENIED));
    EXPECT_EQ(log.Start(), 2);
  }
  {
    const INTERPOSER(GetFileInformationByHandle) inspect(log.Module(),
                                                         Answers(FALSE, ERROR_ACCESS_DENIED));
    EXPECT_EQ(log.Start(), 2);
  }

  EXPECT_THAT(log.Files(), IsEmpty());
}

TEST(LogStartFolderTest, AFolderBelowTheRootOfADriveHasNoProgramDataAboveIt) {
  if (!IsThrowawayMachine()) {
    GTEST_SKIP() << kMachineIsKept;
  }
  const AllowOutside open("what lies below a root is no folder of the test's own");
  TestLog log;
  const std::wstring folder = log.Folder().substr(0, 3) + L"nhupdate_log_below_the_root";
  ASSERT_FALSE(Exists(folder));
  CreateFolders(folder);

  const int result = log.Start(log.Settings(), folder);
  log.Write(L"record");
  log.Stop();

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(folder + L"\\NHUpdateManager.log"), ElementsAre("record"));
  EXPECT_TRUE(::DeleteFileW((folder + L"\\NHUpdateManager.log").c_str()));
  EXPECT_TRUE(::RemoveDirectoryW(folder.c_str()));
}

TEST(LogStartFolderTest, APathThatCantBeMadeFullMakesTheStartFail) {
  TestLog log;
  {
    const INTERPOSER(GetFullPathNameW) full(log.Module(), Answers(DWORD{0}, ERROR_INVALID_NAME));
    EXPECT_EQ(log.Start(), 2);
  }
  {
    // Below a current folder that has become longer between the two calls.
    INTERPOSER(GetFullPathNameW) full(log.Module(),
                                      [&](const wchar_t* path, DWORD units, auto... rest) {
                                        const DWORD length = full.Original()(path, units, rest...);
                                        return units == 0 ? length : units;
                                      });
    EXPECT_EQ(log.Start(), 2);
    EXPECT_EQ(full.Calls(), 2);
  }

  EXPECT_THAT(log.Files(), IsEmpty());
}

// A folder that can be reached through a link in the scratch folder too.
class LinkedFolder {
 public:
  explicit LinkedFolder(const LogPlace& place, const std::wstring& path_behind_link)
      : link_(place.Outside(L"link")),
        path_behind_link_(path_behind_link),
        folder_(place.Outside(L"target") + path_behind_link) {
    CreateFolders(folder_);
    CreateLink(link_, place.Outside(L"target"));
  }
  ~LinkedFolder() { RemoveFolderLink(link_); }
  LinkedFolder(const LinkedFolder&) = delete;
  LinkedFolder& operator=(const LinkedFolder&) = delete;

  [[nodiscard]] std::wstring ThroughLink() const { return link_ + path_behind_link_; }
  [[nodiscard]] const std::wstring& Itself() const { return folder_; }

 private:
  std::wstring link_;
  std::wstring path_behind_link_;
  std::wstring folder_;
};

TEST(LinkedFolderTest, ALinkThatUsersCanMakeIsRefused) {
  for (const wchar_t* path_behind_link :
       {L"\\Log", L"\\NimbaHub\\Log", L"\\NimbaSoftware\\NimbaHub\\Log"}) {
    TestLog log;
    const LinkedFolder folder(log, path_behind_link);

    const int result = log.Start(log.Settings(), folder.ThroughLink());
    log.Write(L"ignored");

    EXPECT_EQ(result, 3) << PrintToString(path_behind_link);
    EXPECT_THAT(ListTree(folder.Itself()), IsEmpty());
  }
}

// Whoever moved ProgramData to another drive left a link in its place. And what is above the
// folders of a server, or of a volume without a letter, isn't known here; the prefix makes such a
// path of one that every machine has.
TEST(LinkedFolderTest, ALinkInPlaceOfProgramDataOrOnTheWayFromNoDriveIsFollowed) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"", L"\\Corvane\\NimbaSoftware\\NimbaHub\\Log"}, {L"\\\\?\\", L"\\Log"}};
  for (const auto& [prefix, path_behind_link] : cases) {
    TestLog log;
    const LinkedFolder folder(log, path_behind_link);

    EXPECT_EQ(log.Start(log.Settings(), prefix + folder.ThroughLink()), 0);
    log.Write(L"record");
    log.Stop();

    EXPECT_THAT(ReadTexts(folder.Itself() + L"\\NHUpdateManager.log"), ElementsAre("record"));
  }
}

TEST(LinkedFolderTest, TheFolderCantBeExchangedWhileTheLogIsOpen) {
  StartedLog log;
  const std::wstring moved = log.Outside(L"moved");

  const BOOL is_moved_while_open = ::MoveFileW(log.Folder().c_str(), moved.c_str());
  const DWORD error = ::GetLastError();
  log.Stop();
  const BOOL is_moved_afterwards = ::MoveFileW(log.Folder().c_str(), moved.c_str());

  EXPECT_FALSE(is_moved_while_open);
  EXPECT_EQ(error, DWORD{ERROR_SHARING_VIOLATION});
  EXPECT_TRUE(is_moved_afterwards);
}

// The other handle lets the folder be exchanged, but that alone must not switch the log off.
TEST(LinkedFolderTest, AFolderThatOthersMayExchangeIsLoggedIn) {
  TestLog log;
  HeldFile other(log.Folder(), FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, DELETE);

  const int result = log.Start();
  log.Write(L"all the same");
  log.Stop();

  EXPECT_EQ(result, 0);
  other.Release();  // nobody could list the folder otherwise
  EXPECT_THAT(log.Texts(), ElementsAre("all the same"));
}

TEST(LinkedFolderTest, AFolderThatOthersKeepFromBeingListedIsLoggedIn) {
  TestLog log;
  HeldFile other(log.Folder(), FILE_SHARE_WRITE | FILE_SHARE_DELETE);

  const int result = log.Start();
  log.Write(L"all the same");
  log.Stop();

  EXPECT_EQ(result, 0);
  other.Release();
  EXPECT_THAT(log.Texts(), ElementsAre("all the same"));
}

}  // namespace
}  // namespace nhupdate_test
