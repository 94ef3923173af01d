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

// A drive whose root is the folder.
class DriveOf {
 public:
  explicit DriveOf(const std::wstring& folder) : folder_(folder) {
    EXPECT_TRUE(::DefineDosDeviceW(0, kDrive, folder_.c_str()));
  }
  ~DriveOf() {
    EXPECT_TRUE(::DefineDosDeviceW(DDD_REMOVE_DEFINITION | DDD_EXACT_MATCH_ON_REMOVE, kDrive,
                                   (L"\\??\\" + folder_).c_str()));
  }
  DriveOf(const DriveOf&) = delete;
  DriveOf& operator=(const DriveOf&) = delete;

  [[nodiscard]] std::wstring Root() const { return std::wstring(kDrive) + L"\\"; }

 private:
  static constexpr wchar_t kDrive[] = L"Q:";
  std::wstring folder_;
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
  const DriveOf drive(place.Folder());
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), drive.Root());
  library.Write(kFullFile);
  library.Write(L"next");
  library.Stop();

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ReadTexts(place.RotatedFile(1)), ElementsAre(kFullFileText));
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("next"));
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
  EXPECT_EQ(inspect.Calls(), 2);
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
