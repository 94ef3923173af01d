// When a file is put aside, and what is in the way of that.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/existence.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

TEST(LogRotationTest, PutsAFullFileAsideBeforeTheNextRecord) {
  StartedLog log(kSmallFiles);

  log.library.Write(kFullFile);
  const std::vector<std::wstring> when_full = ListTree(log.place.Folder());
  log.library.Write(L"next");

  EXPECT_THAT(when_full, ElementsAre(L"NHUpdateManager.log"));
  EXPECT_THAT(ReadTexts(log.place.RotatedFile(1)), ElementsAre(kFullFileText));
  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("next"));
}

TEST(LogRotationTest, KeepsAFileThatHasRoomForOneMoreByte) {
  StartedLog log(kSmallFiles);
  log.library.Write(L"");
  const std::size_t header_and_empty_record = ReadFileBytes(log.place.CurrentFile()).size();
  const std::size_t empty_record = ReadFileBytes(log.place.CurrentFile()).find('\n');
  const std::size_t record =
      header_and_empty_record - empty_record - 1;  // what a record needs besides its text

  log.library.Write(std::wstring(16 * 1024 - 1 - header_and_empty_record - record, L'x'));
  const std::size_t size_before = ReadFileBytes(log.place.CurrentFile()).size();
  log.library.Write(L"still here");

  EXPECT_EQ(size_before, 16u * 1024 - 1);
  EXPECT_FALSE(nhupdate::Exists(log.place.RotatedFile(1)));
  EXPECT_EQ(ReadTexts(log.place.CurrentFile()).back(), "still here");
}

TEST(LogRotationTest, PutsAFullFileOfAnEarlierRunAsideAtStart) {
  const LogPlace place(kSmallFiles);
  const std::string earlier =
      "2026-11-20T14:03:05.123+02:00 [1:1] INFO  [tag] " + std::string(16 * 1024, 'x') + "\n";
  WriteFileBytes(place.CurrentFile(), earlier);
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 0);
  EXPECT_EQ(ReadFileBytes(place.RotatedFile(1)), earlier);
  EXPECT_EQ(ReadRecords(place.CurrentFile()).size(), 1u);
}

TEST(LogRotationTest, FollowsARotationByAnotherWriterWithTheNextRecord) {
  StartedLog log(kSmallFiles);
  log.library.Write(kFullFile);
  // What another process does: it renames the file and writes into a new one.
  ASSERT_TRUE(::MoveFileW(log.place.CurrentFile().c_str(), log.place.RotatedFile(1).c_str()));
  WriteFileBytes(log.place.CurrentFile(),
                 "2026-11-20T14:03:05.123+02:00 [1:1] INFO  [tag] other\n");

  log.library.Write(L"next");

  EXPECT_THAT(ListTree(log.place.Folder()),
              ElementsAre(L"NHUpdateManager.1.log", L"NHUpdateManager.log"));
  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("other", "next"));
}

TEST(LogRotationTest, FollowsARenameOfAFileThatIsNotFullWithinASecond) {
  StartedLog log(kSmallFiles);
  FakeUptime uptime(log.library);
  log.library.Write(L"before");
  ASSERT_TRUE(
      ::MoveFileW(log.place.CurrentFile().c_str(), log.place.Outside(L"moved.log").c_str()));

  uptime.Forward(1000);
  log.library.Write(L"after");

  EXPECT_THAT(ReadTexts(log.place.Outside(L"moved.log")), ElementsAre("before"));
  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("after"));
}

nhupdate::UniqueFile OpenAsReader(const std::wstring& path, DWORD sharing) {
  return nhupdate::UniqueFile(
      ::CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr));
}

TEST(HinderedRotationTest, AReaderThatSharesDeletionIsNotInTheWay) {
  StartedLog log(kSmallFiles);
  log.library.Write(kFullFile);
  const auto reader =
      OpenAsReader(log.place.CurrentFile(), FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
  ASSERT_TRUE(reader.IsValid());

  log.library.Write(L"next");

  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("next"));
}

TEST(HinderedRotationTest, AnyReaderThatAllowsWritingCanOpenTheLog) {
  StartedLog log(kSmallFiles);

  EXPECT_TRUE(OpenAsReader(log.place.CurrentFile(), FILE_SHARE_READ | FILE_SHARE_WRITE).IsValid());
}

TEST(HinderedRotationTest, GoesOnInTheSameFileWhileAReaderForbidsTheRename) {
  StartedLog log(kSmallFiles);
  FakeUptime uptime(log.library);
  log.library.Write(kFullFile);
  auto reader = OpenAsReader(log.place.CurrentFile(), FILE_SHARE_READ | FILE_SHARE_WRITE);
  ASSERT_TRUE(reader.IsValid());

  log.library.Write(L"second");
  reader.Reset();
  log.library.Write(L"third");  // too soon for another try
  uptime.Forward(1000);
  log.library.Write(L"fourth");

  EXPECT_THAT(ReadTexts(log.place.RotatedFile(1)), ElementsAre(kFullFileText, "second", "third"));
  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("fourth"));
}

TEST(HinderedRotationTest, TriesARenameThatFailedOnlyOnceASecond) {
  StartedLog log(kSmallFiles);
  log.library.Write(kFullFile);
  int renames_within_a_second = 0;
  int renames = 0;
  {
    FakeUptime uptime(log.library);
    Interposer<decltype(::SetFileInformationByHandle)> rename(
        log.library.Module(), "SetFileInformationByHandle",
        [](HANDLE, FILE_INFO_BY_HANDLE_CLASS, void*, DWORD) -> BOOL {
          ::SetLastError(ERROR_ACCESS_DENIED);
          return FALSE;
        });
    for (int record = 0; record < 100; ++record) {
      log.library.Write(L"record");
    }
    uptime.Forward(999);
    log.library.Write(L"still too soon");
    renames_within_a_second = rename.Calls();
    uptime.Forward(1);
    log.library.Write(L"last");
    renames = rename.Calls();
  }

  EXPECT_EQ(renames_within_a_second, 1);
  EXPECT_EQ(renames, 2);
  EXPECT_EQ(ReadTexts(log.place.CurrentFile()).size(), 103u);
}

TEST(HinderedRotationTest, StaysInTheRenamedFileWhenNoNewOneCanBeMade) {
  StartedLog log(kSmallFiles);
  log.library.Write(kFullFile);
  FakeUptime uptime(log.library);
  {
    bool is_renamed = false;
    Interposer<decltype(::SetFileInformationByHandle)> rename(
        log.library.Module(), "SetFileInformationByHandle",
        [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
          is_renamed = true;
          return rename.Original()(file, kind, information, size);
        });
    Interposer<decltype(::CreateFileW)> create(
        log.library.Module(), "CreateFileW",
        [&](const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
            DWORD disposition, DWORD flags, HANDLE model) {
          if (!is_renamed) {
            return create.Original()(path, access, sharing, security, disposition, flags, model);
          }
          ::SetLastError(ERROR_DISK_FULL);
          return INVALID_HANDLE_VALUE;
        });
    log.library.Write(L"no new file");
    EXPECT_TRUE(is_renamed);
  }
  EXPECT_EQ(ReadTexts(log.place.RotatedFile(1)).back(), "no new file");

  uptime.Forward(1000);
  log.library.Write(L"new file");

  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("new file"));
}

}  // namespace
}  // namespace nhupdate_test
