// Every user may put things into the log folder, for an elevated writer to stumble over.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/end_to_end/support/folder_link.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

const std::wstring kFullFile(16 * 1024, L'x');

TEST(PlantedNamesTest, AFileOfSeveralNamesIsRefused) {
  const LogPlace place;
  WriteFileBytes(place.Outside(L"victim"), "precious");
  ASSERT_TRUE(
      ::CreateHardLinkW(place.CurrentFile().c_str(), place.Outside(L"victim").c_str(), nullptr));
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());
  library.Write(L"ignored");

  EXPECT_EQ(result, 5);
  EXPECT_EQ(ReadFileBytes(place.Outside(L"victim")), "precious");
}

// Wine follows the link when it opens the file; there it is the resolved path that tells.
TEST(PlantedNamesTest, ALinkToAFileIsRefused) {
  const LogPlace place;
  WriteFileBytes(place.Outside(L"victim"), "precious");
  CreateLink(place.CurrentFile(), place.Outside(L"victim"));
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());
  library.Write(L"ignored");

  EXPECT_EQ(result, 5);
  EXPECT_EQ(ReadFileBytes(place.Outside(L"victim")), "precious");
}

// What Windows tells of a file or folder when it is a link; Wine has no such.
struct ReparsePointCase {
  const char* name;
  DWORD kind;  // of what is made a link: FILE_ATTRIBUTE_DIRECTORY or 0 for the file
  int result;
};

TEST(PlantedNamesTest, ReparsePointsAreRefused) {
  const ReparsePointCase cases[] = {
      {"the folder", FILE_ATTRIBUTE_DIRECTORY, 3},
      {"the file", 0, 5},
  };
  for (const ReparsePointCase& test : cases) {
    const LogPlace place;
    LoadedLogLibrary library;
    int result = 0;
    {
      Interposer<decltype(::GetFileInformationByHandle)> inspect(
          library.Module(), "GetFileInformationByHandle",
          [&](HANDLE file, BY_HANDLE_FILE_INFORMATION* information) {
            const BOOL done = inspect.Original()(file, information);
            if ((information->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == test.kind) {
              information->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
            }
            return done;
          });
      result = library.Start(place.Settings(), place.Folder());
    }

    EXPECT_EQ(result, test.result) << test.name;
  }
}

TEST(PlantedNamesTest, LinksAreOpenedThemselvesAndNotFollowed) {
  const LogPlace place("MaxFileSizeKB=16\n");
  LoadedLogLibrary library;
  int opened = 0;
  {
    Interposer<decltype(::CreateFileW)> create(
        library.Module(), "CreateFileW",
        [&](const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
            DWORD disposition, DWORD flags, HANDLE model) {
          ++opened;
          EXPECT_NE(flags & FILE_FLAG_OPEN_REPARSE_POINT, 0u) << testing::PrintToString(path);
          EXPECT_TRUE(disposition == OPEN_EXISTING || disposition == OPEN_ALWAYS);
          return create.Original()(path, access, sharing, security, disposition, flags, model);
        });
    EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 0);
    library.Write(kFullFile);
    library.Write(L"next");
  }

  EXPECT_GE(opened, 4);
  EXPECT_TRUE(nhupdate::Exists(place.RotatedFile(1)));
}

TEST(PlantedNamesTest, AFolderUnderTheFilesNameIsRefused) {
  const LogPlace place;
  CreateFolders(place.CurrentFile());
  LoadedLogLibrary library;

  EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 5);
}

TEST(PlantedNamesTest, AFolderExchangedForALinkOnTheWayIsRefused) {
  const LogPlace place;
  LoadedLogLibrary library;
  int result = 0;
  {
    // The file turns out to lie elsewhere than in the folder that was looked at.
    Interposer<decltype(::GetFinalPathNameByHandleW)> resolve(
        library.Module(), "GetFinalPathNameByHandleW",
        [&](HANDLE file, wchar_t* path, DWORD size, DWORD flags) {
          const DWORD units = resolve.Original()(file, path, size, flags);
          if (size > units && std::wstring_view(path, units).ends_with(L".log")) {
            path[1] = L'?';
          }
          return units;
        });
    result = library.Start(place.Settings(), place.Folder());
  }

  EXPECT_EQ(result, 5);
}

TEST(PlantedNamesTest, ALinkPlantedWhileTheLogIsRotatedIsNotWrittenThrough) {
  const LogPlace place("MaxFileSizeKB=16\n");
  WriteFileBytes(place.Outside(L"victim"), "precious");
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(kFullFile);
  {
    Interposer<decltype(::SetFileInformationByHandle)> rename(
        library.Module(), "SetFileInformationByHandle",
        [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
          const BOOL done = rename.Original()(file, kind, information, size);
          CreateLink(place.CurrentFile(), place.Outside(L"victim"));
          return done;
        });
    library.Write(L"next");
  }

  EXPECT_EQ(ReadFileBytes(place.Outside(L"victim")), "precious");
  EXPECT_EQ(ReadTexts(place.RotatedFile(1)).back(), "next");
}

TEST(PlantedNamesTest, NamesThatAreTakenArePassedOverWhateverIsThere) {
  const LogPlace place("MaxFileSizeKB=16\nMaxFiles=10\n");
  WriteFileBytes(place.Outside(L"victim"), "precious");
  CreateFolders(place.RotatedFile(1));
  CreateLink(place.RotatedFile(2), place.Outside(L"victim"));
  ASSERT_TRUE(
      ::CreateHardLinkW(place.RotatedFile(3).c_str(), place.Outside(L"victim").c_str(), nullptr));
  WriteFileBytes(place.Folder() + L"\\NHUPDATEMANAGER.4.LOG", "x");
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());

  library.Write(kFullFile);
  library.Write(L"next");

  EXPECT_EQ(ReadTexts(place.RotatedFile(5)).size(), 1u);
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("next"));
  EXPECT_EQ(ReadFileBytes(place.Outside(L"victim")), "precious");
}

TEST(PlantedNamesTest, AFileThatAppearsUnderTheNewNameIsNotReplaced) {
  const LogPlace place("MaxFileSizeKB=16\n");
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(kFullFile);
  {
    Interposer<decltype(::SetFileInformationByHandle)> rename(
        library.Module(), "SetFileInformationByHandle",
        [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
          WriteFileBytes(place.RotatedFile(1), "precious");
          return rename.Original()(file, kind, information, size);
        });
    library.Write(L"next");
  }

  EXPECT_EQ(ReadFileBytes(place.RotatedFile(1)), "precious");
  EXPECT_EQ(ReadTexts(place.CurrentFile()).back(), "next");
}

TEST(PlantedNamesTest, DeletingRotatedFilesLeavesAloneWhatLinksLeadTo) {
  const LogPlace place("MaxFiles=1\n");
  WriteFileBytes(place.Outside(L"victim"), "precious");
  WriteFileBytes(place.Outside(L"folder\\file"), "precious");
  CreateFolders(place.RotatedFile(1) + L"\\inside");
  CreateLink(place.RotatedFile(2), place.Outside(L"victim"));
  ASSERT_TRUE(
      ::CreateHardLinkW(place.RotatedFile(3).c_str(), place.Outside(L"victim").c_str(), nullptr));
  CreateLink(place.RotatedFile(4), place.Outside(L"folder"));
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 0);
  EXPECT_EQ(ReadFileBytes(place.Outside(L"victim")), "precious");
  EXPECT_EQ(ReadFileBytes(place.Outside(L"folder\\file")), "precious");
  EXPECT_TRUE(nhupdate::Exists(place.RotatedFile(1) + L"\\inside"));
  EXPECT_FALSE(nhupdate::Exists(place.RotatedFile(3)));
}

TEST(PlantedNamesTest, TheHighestNumberDoesNotStopRotation) {
  const LogPlace place("MaxFileSizeKB=16\n");
  WriteFileBytes(place.RotatedFile(999'999'999), "x");
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());

  library.Write(kFullFile);
  library.Write(kFullFile);
  library.Write(L"next");

  EXPECT_TRUE(nhupdate::Exists(place.RotatedFile(1)));
  EXPECT_TRUE(nhupdate::Exists(place.RotatedFile(2)));
}

}  // namespace
}  // namespace nhupdate_test
