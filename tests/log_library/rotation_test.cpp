#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/log_library/loaded_log_library.h"
#include "tests/log_library/log_records.h"
#include "tests/support/files.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

constexpr char kSmallFiles[] = "MaxFileSizeKB=16\nMaxFiles=5\n";
const std::wstring kFullFile(16 * 1024, L'x');

// Lets the library's clock run on without waiting.
class FakeUptime {
 public:
  explicit FakeUptime(const LoadedLogLibrary& library)
      : uptime_(library.Module(), "GetTickCount64",
                [this]() -> ULONGLONG { return uptime_.Original()() + forward_ms_; }) {}

  void Forward(ULONGLONG milliseconds) { forward_ms_ += milliseconds; }

 private:
  ULONGLONG forward_ms_ = 0;
  Interposer<ULONGLONG()> uptime_;
};

nhupdate::UniqueFile OpenAsReader(const std::wstring& path, DWORD sharing) {
  return nhupdate::UniqueFile(
      ::CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr));
}

TEST(LogRotationTest, PutsAFullFileAsideBeforeTheNextRecord) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());

  library.Write(kFullFile);
  const std::vector<std::wstring> when_full = ListTree(place.Folder());
  library.Write(L"next");

  EXPECT_THAT(when_full, ElementsAre(L"NHUpdateManager.log"));
  EXPECT_EQ(ReadTexts(place.RotatedFile(1)).size(), 1u);
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("next"));
}

TEST(LogRotationTest, KeepsAFileThatHasRoomForOneMoreByte) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(L"");
  const std::size_t header_and_empty_record = ReadFileBytes(place.CurrentFile()).size();
  const std::size_t empty_record = ReadFileBytes(place.CurrentFile()).find('\n');
  const std::size_t record =
      header_and_empty_record - empty_record - 1;  // what a record needs besides its text

  library.Write(std::wstring(16 * 1024 - 1 - header_and_empty_record - record, L'x'));
  library.Write(L"still here");

  EXPECT_FALSE(nhupdate::Exists(place.RotatedFile(1)));
  EXPECT_EQ(ReadTexts(place.CurrentFile()).back(), "still here");
}

TEST(LogRotationTest, PutsAFullFileOfAnEarlierRunAsideAtStart) {
  const LogPlace place(kSmallFiles);
  const std::string earlier =
      "2026-11-20T14:03:05.123+02:00 [1:1] INFO  [tag] " + std::string(16 * 1024, 'x') + "\n";
  WriteFileBytes(place.CurrentFile(), earlier);
  LoadedLogLibrary library;

  std::ignore = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(ReadFileBytes(place.RotatedFile(1)), earlier);
  EXPECT_EQ(ReadRecords(place.CurrentFile()).size(), 1u);
}

TEST(LogRotationTest, FollowsARotationByAnotherWriterWithTheNextRecord) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(kFullFile);
  // What another process does: it renames the file and writes into a new one.
  ASSERT_TRUE(::MoveFileW(place.CurrentFile().c_str(), place.RotatedFile(1).c_str()));
  WriteFileBytes(place.CurrentFile(), "2026-11-20T14:03:05.123+02:00 [1:1] INFO  [tag] other\n");

  library.Write(L"next");

  EXPECT_THAT(ListTree(place.Folder()),
              ElementsAre(L"NHUpdateManager.1.log", L"NHUpdateManager.log"));
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("other", "next"));
}

TEST(LogRotationTest, FollowsARenameOfAFileThatIsNotFullWithinASecond) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  FakeUptime uptime(library);
  library.Write(L"before");
  ASSERT_TRUE(::MoveFileW(place.CurrentFile().c_str(), place.Outside(L"moved.log").c_str()));

  uptime.Forward(1000);
  library.Write(L"after");

  EXPECT_THAT(ReadTexts(place.Outside(L"moved.log")), ElementsAre("before"));
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("after"));
}

TEST(LogRotationTest, AReaderThatSharesDeletionIsNotInTheWay) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(kFullFile);
  const auto reader =
      OpenAsReader(place.CurrentFile(), FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
  ASSERT_TRUE(reader.IsValid());

  library.Write(L"next");

  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("next"));
}

TEST(LogRotationTest, AnyReaderThatAllowsWritingCanOpenTheLog) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());

  EXPECT_TRUE(OpenAsReader(place.CurrentFile(), FILE_SHARE_READ | FILE_SHARE_WRITE).IsValid());
}

TEST(LogRotationTest, GoesOnInTheSameFileWhileAReaderForbidsTheRename) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  FakeUptime uptime(library);
  library.Write(kFullFile);
  auto reader = OpenAsReader(place.CurrentFile(), FILE_SHARE_READ | FILE_SHARE_WRITE);
  ASSERT_TRUE(reader.IsValid());

  library.Write(L"second");
  reader.Reset();
  library.Write(L"third");  // too soon for another try
  uptime.Forward(1000);
  library.Write(L"fourth");

  const auto rotated = ReadTexts(place.RotatedFile(1));
  ASSERT_EQ(rotated.size(), 3u);
  EXPECT_EQ(rotated[1], "second");
  EXPECT_EQ(rotated[2], "third");
  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("fourth"));
}

TEST(LogRotationTest, TriesARenameThatFailedOnlyOnceASecond) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(kFullFile);
  int renames = 0;
  {
    FakeUptime uptime(library);
    Interposer<decltype(::SetFileInformationByHandle)> rename(
        library.Module(), "SetFileInformationByHandle",
        [](HANDLE, FILE_INFO_BY_HANDLE_CLASS, void*, DWORD) -> BOOL {
          ::SetLastError(ERROR_ACCESS_DENIED);
          return FALSE;
        });
    for (int record = 0; record < 100; ++record) {
      library.Write(L"record");
    }
    uptime.Forward(1000);
    library.Write(L"last");
    renames = rename.Calls();
  }

  // A slow machine may need more than a second for a hundred records.
  EXPECT_GE(renames, 2);
  EXPECT_LE(renames, 10);
  EXPECT_EQ(ReadTexts(place.CurrentFile()).size(), 102u);
}

TEST(LogRotationTest, StaysInTheRenamedFileWhenNoNewOneCanBeMade) {
  const LogPlace place(kSmallFiles);
  LoadedLogLibrary library;
  std::ignore = library.Start(place.Settings(), place.Folder());
  library.Write(kFullFile);
  FakeUptime uptime(library);
  {
    bool is_renamed = false;
    Interposer<decltype(::SetFileInformationByHandle)> rename(
        library.Module(), "SetFileInformationByHandle",
        [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
          is_renamed = true;
          return rename.Original()(file, kind, information, size);
        });
    Interposer<decltype(::CreateFileW)> create(
        library.Module(), "CreateFileW",
        [&](const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
            DWORD disposition, DWORD flags, HANDLE model) {
          if (!is_renamed) {
            return create.Original()(path, access, sharing, security, disposition, flags, model);
          }
          ::SetLastError(ERROR_DISK_FULL);
          return INVALID_HANDLE_VALUE;
        });
    library.Write(L"no new file");
    EXPECT_TRUE(is_renamed);
  }
  EXPECT_EQ(ReadTexts(place.RotatedFile(1)).back(), "no new file");

  uptime.Forward(1000);
  library.Write(L"new file");

  EXPECT_THAT(ReadTexts(place.CurrentFile()), ElementsAre("new file"));
}

}  // namespace
}  // namespace nhupdate_test
