// The current file: how it is opened, and what others have done to it.

#include "log_library/log_file.h"

#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/test_log.h"

namespace nhupdate_test {
namespace {

using testing::EndsWith;
using testing::StartsWith;

TEST(LogFileTest, IsOpenForAppendingOnlySharedAndNotInherited) {
  TestLog log;
  const INTERPOSER(CreateFileW) create(
      log.Module(), [&](const wchar_t* path, DWORD access, DWORD sharing,
                        SECURITY_ATTRIBUTES* security, DWORD disposition, auto...) {
        if (path == log.CurrentFile()) {
          EXPECT_EQ(access, DWORD{FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE});
          EXPECT_EQ(sharing, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE});
          EXPECT_EQ(disposition, DWORD{OPEN_ALWAYS});
          EXPECT_EQ(security, nullptr);
        }
      });

  EXPECT_EQ(log.Start(), 0);
  EXPECT_TRUE(Exists(log.CurrentFile()));
}

TEST(LogFileTest, IsNotOpenedWhenItCantBeFoundOutWhatItIs) {
  TestLog log;
  const INTERPOSER(Sleep) sleep(log.Module(), [](DWORD) {});
  const INTERPOSER(GetFileInformationByHandle) inspect(
      log.Module(),  // the first call is about the folder
      AnswersIf([&](auto...) { return inspect.Calls() > 1; }, FALSE, ERROR_ACCESS_DENIED));

  EXPECT_EQ(log.Start(), 4);
  EXPECT_EQ(inspect.Calls(), 1 + 20 + 1);  // the folder, the file, and the one in its place
}

TEST(LogFileTest, IsWrittenOnWhenItsSizeCantBeHad) {
  TestLog log(kSmallFiles);
  const INTERPOSER(GetFileInformationByHandleEx) inspect(
      log.Module(), AnswersIf([](auto, auto kind, auto...) { return kind == FileStandardInfo; },
                              FALSE, ERROR_ACCESS_DENIED));

  const int result = log.Start();
  log.Write(kFullFile);
  log.Write(L"next");

  EXPECT_EQ(result, 0);
  EXPECT_THAT(log.Texts(), ElementsAre(kFullFileText, "next"));
  EXPECT_FALSE(Exists(log.RotatedFile(1)));
}

// What another process leaves behind when the disk is full.
const std::string kCutRecord = std::string(kEarlierHead) + "cut sh";

TEST(LogFileTest, ACutRecordOfAnotherProcessIsNotContinuedByTheNextOne) {
  StartedLog log;
  log.Write(L"before");
  AppendFileBytes(log.CurrentFile(), kCutRecord);

  log.Write(L"after");

  EXPECT_THAT(log.Texts(), ElementsAre("before", "cut sh", "after"));
}

TEST(LogFileTest, ACutRecordOfAnEarlierRunIsNotContinuedByTheHeaderRecord) {
  TestLog log;
  AppendFileBytes(log.CurrentFile(), kCutRecord);

  EXPECT_EQ(log.Start(), 0);

  const auto records = ReadRecords(log.CurrentFile());
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].text, "cut sh");
  EXPECT_THAT(records[1].text, StartsWith("Log library "));
}

TEST(LogFileTest, ASingleByteOfAnEarlierRunIsNotContinuedEither) {
  TestLog log;
  AppendFileBytes(log.CurrentFile(), "x");

  EXPECT_EQ(log.Start(), 0);

  EXPECT_THAT(ReadFileBytes(log.CurrentFile()), StartsWith("x\n20"));
}

TEST(LogFileTest, IsReadOnlyWhenOthersHaveWritten) {
  StartedLog log;
  log.Write(L"before");
  const INTERPOSER(ReOpenFile) open(log.Module(), [](HANDLE, DWORD access, auto...) {
    EXPECT_EQ(access, DWORD{FILE_READ_DATA});
  });

  log.Write(L"one");
  log.Write(L"two");
  EXPECT_EQ(open.Calls(), 0);
  AppendFileBytes(log.CurrentFile(), kCutRecord);
  log.Write(L"three");
  log.Write(L"four");

  EXPECT_EQ(open.Calls(), 1);
}

TEST(LogFileTest, IsAskedForItsSizeOnceForEachRecord) {
  StartedLog log;
  const FakeUptime uptime(log.Module());
  log.Write(L"looks the file up");
  const INTERPOSER(GetFileInformationByHandleEx) inspect(log.Module());

  log.Write(L"one");
  log.Write(L"two");

  EXPECT_EQ(inspect.Calls(), 2);
}

// It counts as ended then, whatever it ends in.
TEST(LogFileTest, IsWrittenOnWhereItEndsWhenThatCantBeRead) {
  StartedLog log;
  AppendFileBytes(log.CurrentFile(), kCutRecord);
  {
    const INTERPOSER(ReadFile) read(log.Module());
    const INTERPOSER(ReOpenFile) open(log.Module(),
                                      Answers(INVALID_HANDLE_VALUE, ERROR_SHARING_VIOLATION));
    log.Write(L"not opened");
    EXPECT_EQ(open.Calls(), 1);
    EXPECT_EQ(read.Calls(), 0);
  }
  AppendFileBytes(log.CurrentFile(), kCutRecord);
  {
    const INTERPOSER(ReadFile) read(
        log.Module(), [](HANDLE, void* byte, DWORD, DWORD* count, OVERLAPPED*) -> BOOL {
          *static_cast<char*>(byte) = '?';
          *count = 0;
          return TRUE;
        });
    log.Write(L"nothing read");
    EXPECT_EQ(read.Calls(), 1);
  }

  EXPECT_THAT(log.Texts(), ElementsAre(AllOf(StartsWith("cut sh20"), EndsWith("] not opened")),
                                       AllOf(StartsWith("cut sh20"), EndsWith("] nothing read"))));
}

// Changes what Windows tells the library of its files.
class FakeFileInfo {
 public:
  using Change = std::function<void(FILE_STANDARD_INFO&)>;
  FakeFileInfo(const TestLog& log, Change change)
      : change_(std::move(change)),
        inspect_(log.Module(), [this](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind,
                                      void* information, DWORD size) {
          const BOOL done = inspect_.Original()(file, kind, information, size);
          if (kind == FileStandardInfo) {
            change_(*static_cast<FILE_STANDARD_INFO*>(information));
          }
          return done;
        }) {}

 private:
  Change change_;
  INTERPOSER(GetFileInformationByHandleEx) inspect_;
};

TEST(LogFileTest, IsReadAtItsEndHoweverLongItIs) {
  constexpr std::int64_t k4GiB = 1LL << 32;
  for (const std::int64_t size : {k4GiB, k4GiB + 1, 5 * k4GiB / 4}) {
    StartedLog log;
    const FakeFileInfo large(log,
                             [&](FILE_STANDARD_INFO& file) { file.EndOfFile.QuadPart = size; });
    INTERPOSER(ReadFile) read(
        log.Module(), [&](HANDLE, void*, DWORD, DWORD*, OVERLAPPED* position) -> BOOL {
          EXPECT_EQ((std::int64_t{position->OffsetHigh} << 32) | position->Offset, size - 1);
          return FALSE;
        });

    log.Write(L"record");

    EXPECT_GE(read.Calls(), 1);
  }
}

// Says of a file, once, that it was deleted while it was open.
class DeletedFile {
 public:
  explicit DeletedFile(const TestLog& log)
      : info_(log, [this](FILE_STANDARD_INFO& file) {
          std::exchange(tell_, [](FILE_STANDARD_INFO&) {})(file);
        }) {}

  // The two ways in which Windows tells of it.
  using Tell = void (*)(FILE_STANDARD_INFO&);
  static constexpr Tell kByItsNames = [](FILE_STANDARD_INFO& file) { file.NumberOfLinks = 0; };
  static constexpr Tell kByItself = [](FILE_STANDARD_INFO& file) { file.DeletePending = TRUE; };

  void Delete(const TestLog& log, Tell tell) {
    EXPECT_TRUE(::MoveFileW(log.CurrentFile().c_str(), log.Outside(L"deleted.log").c_str()));
    tell_ = tell;
  }

 private:
  Tell tell_ = [](FILE_STANDARD_INFO&) {};
  FakeFileInfo info_;
};

TEST(LogFileTest, IsNotWrittenToWhenItWasDeleted) {
  for (const DeletedFile::Tell tell : {DeletedFile::kByItsNames, DeletedFile::kByItself}) {
    StartedLog log;
    DeletedFile deleted(log);
    const FakeUptime uptime(log.Module());
    log.Write(L"before");
    deleted.Delete(log, tell);

    log.Write(L"after");

    EXPECT_THAT(ReadTexts(log.Outside(L"deleted.log")), ElementsAre("before"));
    EXPECT_THAT(log.Texts(), ElementsAre("after"));
  }
}

TEST(LogFileTest, IsReplacedWhenItWasDeletedAndAnotherProgramKeepsTheNewOneToItself) {
  StartedLog log;
  log.Write(L"before");
  ASSERT_TRUE(::MoveFileW(log.CurrentFile().c_str(), log.Outside(L"deleted.log").c_str()));
  WriteFileBytes(log.CurrentFile(), kEarlier);
  {
    const HeldFile other(log.CurrentFile());
    const FakeFileInfo deleted(log, DeletedFile::kByItsNames);
    log.Write(L"after");
  }

  EXPECT_THAT(ReadTexts(log.Outside(L"deleted.log")), ElementsAre("before"));
  EXPECT_THAT(log.Texts(), ElementsAre("earlier"));
  EXPECT_THAT(log.RotatedTexts(1), ElementsAre("after"));
}

// Neither its size nor that its last record was cut short.
TEST(LogFileTest, LeavesNothingToTheOneThatReplacesIt) {
  StartedLog log;
  {
    INTERPOSER(WriteFile) write(log.Module(),
                                [&](HANDLE file, const void* data, DWORD size, auto... rest) {
                                  return write.Original()(file, data, size / 2, rest...);
                                });
    log.Write(L"cut short");
  }
  ASSERT_TRUE(::MoveFileW(log.CurrentFile().c_str(), log.Outside(L"deleted.log").c_str()));
  WriteFileBytes(log.CurrentFile(), kEarlier);
  const HeldFile other(log.CurrentFile());
  const FakeFileInfo deleted(log, DeletedFile::kByItsNames);
  const INTERPOSER(ReOpenFile) look(log.Module());

  log.Write(L"after");

  EXPECT_THAT(ReadFileBytes(log.RotatedFile(1)), StartsWith("20"));
  EXPECT_EQ(look.Calls(), 0);
}

// Others may rotate without a turn and clean up: when they can't get one, or this writer was
// stopped for long in the middle of its own.
TEST(LogFileTest, KeepsARecordThatIsBeingWrittenWhileOthersRotateAndCleanUp) {
  StartedLog log;
  const INTERPOSER(WriteFile) write(log.Module(), [&](auto... all) {
    EXPECT_TRUE(::MoveFileW(log.CurrentFile().c_str(), log.RotatedFile(1).c_str()));
    CLogFolder folder;
    EXPECT_EQ(folder.Open(log.Folder()), StartResult::kStarted);
    folder.DeleteOutdated(0, 30);
    return write.Original()(all...);
  });

  log.Write(L"record");
  log.Stop();

  EXPECT_THAT(log.RotatedTexts(1), ElementsAre("record"));
}

}  // namespace
}  // namespace nhupdate_test
