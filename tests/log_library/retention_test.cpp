#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

void MakeRotatedFile(const LogPlace& place, int number, int age_hours) {
  WriteFileBytes(place.RotatedFile(number), std::to_string(number));
  const nhupdate::UniqueFile file(::CreateFileW(place.RotatedFile(number).c_str(),
                                                FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0,
                                                nullptr));
  FILETIME time = {};
  ::GetSystemTimeAsFileTime(&time);
  ULARGE_INTEGER units = {{time.dwLowDateTime, time.dwHighDateTime}};
  units.QuadPart -= static_cast<ULONGLONG>(age_hours) * 60 * 60 * 10'000'000;
  time = {units.LowPart, units.HighPart};
  EXPECT_TRUE(::SetFileTime(file.Get(), nullptr, nullptr, &time));
}

TEST(LogRetentionTest, KeepsTheYoungestFilesUpToTheCount) {
  StartedLog log("MaxFileSizeKB=16\nMaxFiles=3\n");

  for (int file = 0; file < 6; ++file) {
    log.library.Write(kFullFile);
  }

  EXPECT_THAT(
      ListTree(log.place.Folder()),
      ElementsAre(L"NHUpdateManager.4.log", L"NHUpdateManager.5.log", L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, KeepsTheCurrentFileAloneWhenThatIsTheCount) {
  StartedLog log("MaxFileSizeKB=16\nMaxFiles=1\n");

  log.library.Write(kFullFile);
  log.library.Write(L"next");
  log.library.Stop();

  EXPECT_THAT(ListTree(log.place.Folder()), ElementsAre(L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, DeletesAtStartWhatIsTooOldOrTooMuch) {
  const LogPlace place("MaxFiles=4\nMaxAgeDays=2\n");
  MakeRotatedFile(place, 1, 49);
  MakeRotatedFile(place, 2, 47);
  MakeRotatedFile(place, 3, 4);
  MakeRotatedFile(place, 4, 3);
  MakeRotatedFile(place, 5, 2);
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ListTree(place.Folder()),
              ElementsAre(L"NHUpdateManager.3.log", L"NHUpdateManager.4.log",
                          L"NHUpdateManager.5.log", L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, DeletesByAgeAlsoBelowTheCount) {
  const LogPlace place("MaxFiles=10\nMaxAgeDays=2\n");
  MakeRotatedFile(place, 1, 49);
  MakeRotatedFile(place, 2, 47);
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ListTree(place.Folder()),
              ElementsAre(L"NHUpdateManager.2.log", L"NHUpdateManager.log"));
}

TEST(LogRetentionTest, AFileFromTheFutureIsNotTooOld) {
  const LogPlace place("MaxFiles=10\nMaxAgeDays=1\n");
  MakeRotatedFile(place, 1, -48);
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 0);
  EXPECT_TRUE(nhupdate::Exists(place.RotatedFile(1)));
}

TEST(LogRetentionTest, LeavesForeignFilesAlone) {
  const LogPlace place("MaxFiles=1\n");
  for (const wchar_t* name : {L"NHUpdateManager.1.log.bak", L"NHUpdateManager.x.log",
                              L"NHUpdateManager.exe.1234.dmp", L"Other.1.log"}) {
    WriteFileBytes(place.Folder() + L"\\" + name, "x");
  }
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 0);
  EXPECT_THAT(
      ListTree(place.Folder()),
      UnorderedElementsAre(L"NHUpdateManager.1.log.bak", L"NHUpdateManager.exe.1234.dmp",
                           L"NHUpdateManager.log", L"NHUpdateManager.x.log", L"Other.1.log"));
}

TEST(LogRetentionTest, AFileThatCantBeDeletedStaysAndIsInNobodysWay) {
  const LogPlace place("MaxFileSizeKB=16\nMaxFiles=1\n");
  WriteFileBytes(place.RotatedFile(7), "held");
  const nhupdate::UniqueFile holder(::CreateFileW(place.RotatedFile(7).c_str(), GENERIC_READ,
                                                  FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0,
                                                  nullptr));
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());
  library.Write(kFullFile);
  library.Write(L"next");

  EXPECT_EQ(result, 0);
  EXPECT_TRUE(nhupdate::Exists(place.RotatedFile(7)));
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("next"));
}

}  // namespace
}  // namespace nhupdate_test
