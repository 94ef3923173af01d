// Which folders a log can be started in, and what becomes of a start for which Windows doesn't tell
// what is there.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/existence.h"
#include "base/windows.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"

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

TEST(LogStartFolderTest, WithoutTheFoldersPathTheStartFails) {
  const LogPlace place;
  LoadedLogLibrary library;
  Interposer<decltype(::GetFinalPathNameByHandleW)> resolve(
      library.Module(), "GetFinalPathNameByHandleW", [](HANDLE, wchar_t*, DWORD, DWORD) -> DWORD {
        ::SetLastError(ERROR_ACCESS_DENIED);
        return 0;
      });

  EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 2);
  EXPECT_THAT(ListTree(place.Folder()), IsEmpty());
}

TEST(LogStartFolderTest, WithoutWhatTheFolderIsTheStartFails) {
  const LogPlace place;
  LoadedLogLibrary library;
  Interposer<decltype(::GetFileInformationByHandle)> inspect(
      library.Module(), "GetFileInformationByHandle",
      [](HANDLE, BY_HANDLE_FILE_INFORMATION*) -> BOOL {
        ::SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
      });

  EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 2);
  EXPECT_THAT(ListTree(place.Folder()), IsEmpty());
}

TEST(LogStartFolderTest, WithoutWhatTheFileIsTheStartFails) {
  const LogPlace place;
  LoadedLogLibrary library;
  Interposer<decltype(::Sleep)> sleep(library.Module(), "Sleep", [](DWORD) {});
  Interposer<decltype(::GetFileInformationByHandle)> inspect(
      library.Module(), "GetFileInformationByHandle",
      [&](HANDLE file, BY_HANDLE_FILE_INFORMATION* information) -> BOOL {
        if (inspect.Calls() == 1) {
          return inspect.Original()(file, information);  // the folder
        }
        ::SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
      });

  EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 4);
  EXPECT_EQ(inspect.Calls(), 1 + 20 + 1);  // the folder, the file, and the one in its place
}

TEST(LogStartFolderTest, AFolderNotKnownToBeNoLinkIsRefused) {
  const LogPlace place;
  LoadedLogLibrary library;
  Interposer<decltype(::GetFileInformationByHandleEx)> inspect(
      library.Module(), "GetFileInformationByHandleEx",
      [](HANDLE, FILE_INFO_BY_HANDLE_CLASS, void*, DWORD) -> BOOL {
        ::SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
      });

  EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 3);
  EXPECT_THAT(ListTree(place.Folder()), IsEmpty());
}

TEST(LogStartFolderTest, WithoutTheFilesSizeTheLogGoesOnInOneFile) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  Interposer<decltype(::GetFileInformationByHandleEx)> inspect(
      library.Module(), "GetFileInformationByHandleEx",
      [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) -> BOOL {
        if (kind != FileStandardInfo) {
          return inspect.Original()(file, kind, information, size);
        }
        ::SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
      });

  const int result = library.Start(place.Settings(), place.Folder());
  library.Write(kFullFile);
  library.Write(L"next");

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre(kFullFileText, "next"));
  EXPECT_FALSE(nhupdate::Exists(place.RotatedFile(1)));
}

}  // namespace
}  // namespace nhupdate_test
