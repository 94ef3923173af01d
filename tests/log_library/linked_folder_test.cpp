// Every user may write to the folders above the log folder too, and could lead an elevated writer
// elsewhere from there.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST(LinkedFolderTest, AFolderThatOthersMayExchangeIsRefused) {
  const LogPlace place;
  nhupdate::UniqueFile other(::CreateFileW(
      place.Folder().c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  ASSERT_TRUE(other.IsValid());
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 3);
  other.Reset();  // nobody could list the folder otherwise
  EXPECT_THAT(ListTree(place.Folder()), IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
