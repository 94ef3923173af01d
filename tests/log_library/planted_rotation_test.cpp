// Every user may put things into the log folder, for an elevated writer to stumble over when it
// rotates and deletes files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "base/existence.h"
#include "log_library/file_names.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

constexpr int kNeverEnding = 20'000;

TEST(PlantedRotationTest, ALinkPlantedWhileTheLogIsRotatedIsNotWrittenThrough) {
  const LogPlace place(kSmallFiles);
  WriteFileBytes(place.Outside(L"victim"), "precious");
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);
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
  EXPECT_THAT(ReadTexts(place.RotatedFile(1)), ElementsAre(kFullFileText));
  EXPECT_THAT(ReadTexts(place.RotatedFile(2)), ElementsAre("next"));
}

TEST(PlantedRotationTest, NamesThatAreTakenArePassedOverWhateverIsThere) {
  const LogPlace place("MaxFileSizeKB=16\nMaxFiles=10\n");
  WriteFileBytes(place.Outside(L"victim"), "precious");
  CreateFolders(place.RotatedFile(1));
  CreateLink(place.RotatedFile(2), place.Outside(L"victim"));
  ASSERT_TRUE(
      ::CreateHardLinkW(place.RotatedFile(3).c_str(), place.Outside(L"victim").c_str(), nullptr));
  WriteFileBytes(place.Folder() + L"\\NHUPDATEMANAGER.4.LOG", "x");
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);

  library.Write(kFullFile);
  library.Write(L"next");

  EXPECT_EQ(ReadTexts(place.RotatedFile(5)).size(), 1u);
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("next"));
  EXPECT_EQ(ReadFileBytes(place.Outside(L"victim")), "precious");
}

TEST(PlantedRotationTest, AFileThatAppearsUnderTheNewNameIsNotReplaced) {
  StartedLog log(kSmallFiles);
  log.library.Write(kFullFile);
  {
    Interposer<decltype(::SetFileInformationByHandle)> rename(
        log.library.Module(), "SetFileInformationByHandle",
        [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
          WriteFileBytes(log.place.RotatedFile(1), "precious");
          return rename.Original()(file, kind, information, size);
        });
    log.library.Write(L"next");
  }

  EXPECT_EQ(ReadFileBytes(log.place.RotatedFile(1)), "precious");
  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("next"));
}

TEST(PlantedRotationTest, DeletingRotatedFilesLeavesAloneWhatLinksLeadTo) {
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

// A folder whose listing never ends.
TEST(PlantedRotationTest, AnyNumberOfPlantedNamesKeepsNobodyWaiting) {
  const LogPlace place(kSmallFiles);
  WriteFileBytes(place.RotatedFile(1), "x");
  LoadedLogLibrary library;
  int deletions = 0;
  int deletions_in_a_turn = 0;
  bool is_in_a_turn = false;
  Interposer<decltype(::WaitForSingleObject)> enter(library.Module(), "WaitForSingleObject",
                                                    [&](HANDLE mutex, DWORD milliseconds) {
                                                      is_in_a_turn = true;
                                                      return enter.Original()(mutex, milliseconds);
                                                    });
  Interposer<decltype(::ReleaseMutex)> leave(library.Module(), "ReleaseMutex", [&](HANDLE mutex) {
    is_in_a_turn = false;
    return leave.Original()(mutex);
  });
  Interposer<decltype(::FindNextFileW)> next(
      library.Module(), "FindNextFileW", [&](HANDLE, WIN32_FIND_DATAW* entry) -> BOOL {
        if (next.Calls() > kNeverEnding) {
          return FALSE;  // so that the test does
        }
        const std::wstring name = nhupdate::RotatedName(static_cast<unsigned>(next.Calls() + 1));
        std::copy_n(name.c_str(), name.size() + 1, entry->cFileName);
        return TRUE;
      });
  Interposer<decltype(::CreateFileW)> create(
      library.Module(), "CreateFileW",
      [&](const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
          DWORD disposition, DWORD flags, HANDLE model) {
        if ((access & DELETE) != 0) {
          ++deletions;
          deletions_in_a_turn += is_in_a_turn ? 1 : 0;
        }
        return create.Original()(path, access, sharing, security, disposition, flags, model);
      });

  const int result = library.Start(place.Settings(), place.Folder());
  const int entries = next.Calls();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(entries, 9999);  // behind the first one
  EXPECT_EQ(deletions, 64);
  EXPECT_EQ(deletions_in_a_turn, 0);
  EXPECT_EQ(leave.Calls(), 1);
}

TEST(PlantedRotationTest, AFileThatAppearsUnderEachNewNameStopsRotationAndNothingElse) {
  StartedLog log(kSmallFiles);
  log.library.Write(kFullFile);
  {
    Interposer<decltype(::SetFileInformationByHandle)> rename(
        log.library.Module(), "SetFileInformationByHandle",
        [](HANDLE, FILE_INFO_BY_HANDLE_CLASS, void*, DWORD) -> BOOL {
          ::SetLastError(ERROR_ALREADY_EXISTS);
          return FALSE;
        });
    log.library.Write(L"next");
    EXPECT_EQ(rename.Calls(), 4);
  }

  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre(kFullFileText, "next"));
}

TEST(PlantedRotationTest, TheHighestNumberDoesNotStopRotation) {
  const LogPlace place(kSmallFiles);
  WriteFileBytes(place.RotatedFile(999'999'999), "x");
  LoadedLogLibrary library;
  ASSERT_EQ(library.Start(place.Settings(), place.Folder()), 0);

  library.Write(kFullFile);
  library.Write(kFullFile);
  library.Write(L"next");

  EXPECT_TRUE(nhupdate::Exists(place.RotatedFile(1)));
  EXPECT_TRUE(nhupdate::Exists(place.RotatedFile(2)));
}

}  // namespace
}  // namespace nhupdate_test
