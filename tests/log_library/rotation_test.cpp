#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "base/existence.h"
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

// Says of the library's file, once, that it was deleted while it was open.
class DeletedFile {
 public:
  explicit DeletedFile(const LoadedLogLibrary& library)
      : inspect_(
            library.Module(), "GetFileInformationByHandleEx",
            [this](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
              const BOOL done = inspect_.Original()(file, kind, information, size);
              if (kind == FileStandardInfo && std::exchange(is_deleted_, false)) {
                static_cast<FILE_STANDARD_INFO*>(information)->NumberOfLinks = 0;
              }
              return done;
            }) {}

  void Delete() { is_deleted_ = true; }

 private:
  bool is_deleted_ = false;
  Interposer<decltype(::GetFileInformationByHandleEx)> inspect_;
};

TEST(LogRotationTest, WritesNothingIntoAFileThatWasDeleted) {
  StartedLog log;
  DeletedFile deleted(log.library);
  const FakeUptime uptime(log.library);
  log.library.Write(L"before");
  ASSERT_TRUE(
      ::MoveFileW(log.place.CurrentFile().c_str(), log.place.Outside(L"deleted.log").c_str()));
  deleted.Delete();

  log.library.Write(L"after");

  EXPECT_THAT(ReadTexts(log.place.Outside(L"deleted.log")), ElementsAre("before"));
  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("after"));
}

// Only without a turn can another process rotate the file and delete it in between.
TEST(LogRotationTest, WritesARecordAgainWhoseFileWasDeletedUnderIt) {
  StartedLog log;
  DeletedFile deleted(log.library);
  Interposer<decltype(::WaitForSingleObject)> wait(
      log.library.Module(), "WaitForSingleObject",
      [](HANDLE, DWORD) -> DWORD { return WAIT_TIMEOUT; });
  log.library.Write(L"before");
  {
    bool is_first = true;
    Interposer<decltype(::WriteFile)> write(
        log.library.Module(), "WriteFile",
        [&](HANDLE file, const void* data, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
          if (std::exchange(is_first, false)) {
            ::MoveFileW(log.place.CurrentFile().c_str(), log.place.Outside(L"deleted.log").c_str());
            deleted.Delete();
          }
          return write.Original()(file, data, size, written, overlapped);
        });
    log.library.Write(L"record");
    EXPECT_EQ(write.Calls(), 2);
  }

  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("record"));
}

}  // namespace
}  // namespace nhupdate_test
