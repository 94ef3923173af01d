// The current file: how it is opened, and what others have done to it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

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
using testing::StartsWith;

TEST(LogFileTest, IsOpenForAppendingOnlySharedAndNotInherited) {
  const LogPlace place;
  LoadedLogLibrary library;
  DWORD access = 0;
  DWORD sharing = 0;
  DWORD disposition = 0;
  bool is_inherited = true;
  {
    Interposer<decltype(::CreateFileW)> create(
        library.Module(), "CreateFileW",
        [&](const wchar_t* path, DWORD wanted, DWORD shared, SECURITY_ATTRIBUTES* security,
            DWORD how, DWORD flags, HANDLE model) {
          if (path == place.CurrentFile()) {
            access = wanted;
            sharing = shared;
            disposition = how;
            is_inherited = security != nullptr && security->bInheritHandle != FALSE;
          }
          return create.Original()(path, wanted, shared, security, how, flags, model);
        });
    EXPECT_EQ(library.Start(place.Settings(), place.Folder()), 0);
  }

  EXPECT_EQ(access, static_cast<DWORD>(FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE));
  EXPECT_EQ(sharing, static_cast<DWORD>(FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE));
  EXPECT_EQ(disposition, static_cast<DWORD>(OPEN_ALWAYS));
  EXPECT_FALSE(is_inherited);
}

TEST(LogFileTest, IsNotOpenedWhenItCantBeFoundOutWhatItIs) {
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

TEST(LogFileTest, IsWrittenOnWhenItsSizeCantBeHad) {
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

constexpr char kCutShort[] = "2026-11-20T14:03:05.123+02:00 [1:1] INFO  [tag] cut sh";

// What another process leaves behind when the disk is full.
void AppendCutRecord(const LogPlace& place) {
  const nhupdate::UniqueFile file(::CreateFileW(place.CurrentFile().c_str(), FILE_APPEND_DATA,
                                                FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                OPEN_ALWAYS, 0, nullptr));
  DWORD written = 0;
  EXPECT_TRUE(::WriteFile(file.Get(), kCutShort, sizeof(kCutShort) - 1, &written, nullptr));
}

TEST(LogFileTest, ACutRecordOfAnotherProcessIsNotContinuedByTheNextOne) {
  StartedLog log;
  log.library.Write(L"before");
  AppendCutRecord(log.place);

  log.library.Write(L"after");

  EXPECT_THAT(ReadTexts(log.place.CurrentFile()), ElementsAre("before", "cut sh", "after"));
}

TEST(LogFileTest, ACutRecordOfAnEarlierRunIsNotContinuedByTheHeaderRecord) {
  const LogPlace place;
  AppendCutRecord(place);
  LoadedLogLibrary library;

  const int result = library.Start(place.Settings(), place.Folder());

  EXPECT_EQ(result, 0);
  const auto records = ReadRecords(place.CurrentFile());
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].text, "cut sh");
  EXPECT_THAT(records[1].text, StartsWith("Log library "));
}

TEST(LogFileTest, IsReadOnlyWhenOthersHaveWritten) {
  StartedLog log;
  log.library.Write(L"before");
  int looks = 0;
  {
    Interposer<decltype(::ReOpenFile)> open(
        log.library.Module(), "ReOpenFile",
        [&](HANDLE file, DWORD access, DWORD sharing, DWORD flags) {
          EXPECT_EQ(access, static_cast<DWORD>(FILE_READ_DATA));
          ++looks;
          return open.Original()(file, access, sharing, flags);
        });
    log.library.Write(L"one");
    log.library.Write(L"two");
    EXPECT_EQ(looks, 0);
    AppendCutRecord(log.place);
    log.library.Write(L"three");
    log.library.Write(L"four");
  }

  EXPECT_EQ(looks, 1);
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

TEST(LogFileTest, IsNotWrittenToWhenItWasDeleted) {
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
TEST(LogFileTest, GetsARecordAgainThatWentIntoADeletedOne) {
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
