// Which folders a log can be started in. Every user may write to the folders above the log folder
// too, and could lead an elevated writer elsewhere from there.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/fence.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"
#include "tests/support/interposer.h"
#include "tests/support/throwaway_machine.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The process's current folder is another one for a while.
class CurrentFolder {
 public:
  explicit CurrentFolder(const std::wstring& folder) : previous_(MAX_PATH, L'\0') {
    previous_.resize(::GetCurrentDirectoryW(MAX_PATH, previous_.data()));
    Change(folder);
  }
  ~CurrentFolder() { Change(previous_); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

  void Change(const std::wstring& folder) {
    EXPECT_TRUE(::SetCurrentDirectoryW(folder.c_str())) << testing::PrintToString(folder);
  }

 private:
  std::wstring previous_;
};

TEST(LogStartFolderTest, ARelativeFolderStaysTheOneItWas) {
  const LogPlace place(kSmallFiles);
  CreateFolders(place.Outside(L"elsewhere\\Log"));
  CurrentFolder current(place.Outside(L""));
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), L"Log");
  current.Change(place.Outside(L"elsewhere"));
  library.Write(kFullFile);
  library.Write(L"next");

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(place.RotatedFile(1)), ElementsAre(kFullFileText));
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("next"));
  EXPECT_THAT(ListTree(place.Outside(L"elsewhere\\Log")), IsEmpty());
}

TEST(LogStartFolderTest, TheRootOfADriveIsAFolderLikeAnyOther) {
  if (!IsThrowawayMachine()) {
    GTEST_SKIP() << kMachineIsKept;
  }
  const AllowOutside open("a root is no folder of the test's own");
  const LogPlace place(kSmallFiles);
  const std::wstring root = place.Folder().substr(0, 3);
  const std::wstring current = root + L"NHUpdateManager.log";
  const std::wstring rotated = root + L"NHUpdateManager.1.log";
  ASSERT_FALSE(nhupdate::Exists(current) || nhupdate::Exists(rotated));
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), root);
  library.Write(kFullFile);
  library.Write(L"next");
  library.Stop();

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(rotated), ElementsAre(kFullFileText));
  EXPECT_THAT(ReadTexts(current), ElementsAre("next"));
  EXPECT_TRUE(::DeleteFileW(rotated.c_str()));
  EXPECT_TRUE(::DeleteFileW(current.c_str()));
}

// Lets the start fail to find out something of the folder, and says what it returns.
template <typename Signature, typename Fake>
int StartWithout(const char* question, Fake fake) {
  const LogPlace place;
  LoadedLogLibrary library;
  const Interposer<Signature> answer(library.Module(), question, fake);

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_THAT(ListTree(place.Folder()), IsEmpty()) << question;
  return result;
}

TEST(LogStartFolderTest, WhatCantBeFoundOutOfTheFolderMakesTheStartFail) {
  EXPECT_EQ(StartWithout<decltype(::GetFinalPathNameByHandleW)>(
                "GetFinalPathNameByHandleW",
                [](HANDLE, wchar_t*, DWORD, DWORD) -> DWORD {
                  ::SetLastError(ERROR_ACCESS_DENIED);
                  return 0;
                }),
            2);
  EXPECT_EQ(StartWithout<decltype(::GetFileInformationByHandle)>(
                "GetFileInformationByHandle",
                [](HANDLE, BY_HANDLE_FILE_INFORMATION*) -> BOOL {
                  ::SetLastError(ERROR_ACCESS_DENIED);
                  return FALSE;
                }),
            2);
}

TEST(LinkedFolderTest, ALinkThatUsersCanMakeIsRefused) {
  for (const wchar_t* path_behind_link :
       {L"\\Log", L"\\NimbaHub\\Log", L"\\NimbaSoftware\\NimbaHub\\Log"}) {
    const LogPlace place;
    const std::wstring link = place.Outside(L"link");
    CreateFolders(place.Outside(L"target") + path_behind_link);
    CreateLink(link, place.Outside(L"target"));
    LoadedLogLibrary library;

    const int result = library.Start(place.Settings(), link + path_behind_link);
    library.Write(L"ignored");
    RemoveFolderLink(link);

    EXPECT_EQ(result, 3) << testing::PrintToString(path_behind_link);
    EXPECT_THAT(ListTree(place.Outside(L"target") + path_behind_link), IsEmpty());
  }
}

// Whoever moved ProgramData to another drive left a link in its place.
TEST(LinkedFolderTest, ALinkInPlaceOfProgramDataIsFollowed) {
  const LogPlace place;
  const std::wstring link = place.Outside(L"ProgramData");
  const std::wstring path_behind_link = L"\\Corvane\\NimbaSoftware\\NimbaHub\\Log";
  CreateFolders(place.Outside(L"target") + path_behind_link);
  CreateLink(link, place.Outside(L"target"));
  int result = 1;
  {
    LoadedLogLibrary library;
    result = library.Start(place.Settings(), link + path_behind_link);
    library.Write(L"record");
  }
  RemoveFolderLink(link);

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(place.Outside(L"target") + path_behind_link + L"\\NHUpdateManager.log"),
              ElementsAre("record"));
}

TEST(LinkedFolderTest, TheFolderCantBeExchangedWhileTheLogIsOpen) {
  StartedLog log;
  const std::wstring moved = log.place.Outside(L"moved");

  const BOOL is_moved_while_open = ::MoveFileW(log.place.Folder().c_str(), moved.c_str());
  const DWORD error = ::GetLastError();
  log.library.Stop();
  const BOOL is_moved_afterwards = ::MoveFileW(log.place.Folder().c_str(), moved.c_str());

  EXPECT_FALSE(is_moved_while_open);
  EXPECT_EQ(error, static_cast<DWORD>(ERROR_SHARING_VIOLATION));
  EXPECT_TRUE(is_moved_afterwards);
}

// Whoever may do that can't switch the log off by it.
TEST(LinkedFolderTest, AFolderThatOthersMayExchangeIsLoggedIn) {
  const LogPlace place;
  nhupdate::UniqueFile other(::CreateFileW(
      place.Folder().c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  ASSERT_TRUE(other.IsValid());
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());
  library.Write(L"all the same");
  library.Stop();

  EXPECT_EQ(result, 0);
  other.Reset();  // nobody could list the folder otherwise
  EXPECT_EQ(ReadTexts(place.CurrentFile()).back(), "all the same");
}

}  // namespace
}  // namespace nhupdate_test
