// Every user may put things into the log folder, for an elevated writer to stumble over when it
// rotates and deletes files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/folder_link.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

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
  EXPECT_EQ(ReadTexts(place.RotatedFile(1)).back(), "next");
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
  EXPECT_EQ(ReadTexts(log.place.CurrentFile()).back(), "next");
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
