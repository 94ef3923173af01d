// A current file that someone else keeps to himself.

#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/test_log.h"

namespace nhupdate_test {
namespace {

using testing::EndsWith;
using testing::StartsWith;

// A log whose file, with a record of an earlier run in it, is held. The waits for it are faked.
class HeldLog : public TestLog {
 public:
  explicit HeldLog(const std::string& settings = "", DWORD sharing = 0)
      : TestLog(settings), sleep_(Module(), [this](DWORD milliseconds) {
          waited_ms_ += milliseconds;
          if (sleep_.Calls() == sleeps_until_release_) {
            LetGo();
          }
        }) {
    WriteFileBytes(CurrentFile(), kEarlier);
    holder_.emplace(CurrentFile(), sharing);
  }

  void LetGo() { holder_.reset(); }
  void LetGoInSleep(int number) { sleeps_until_release_ = number; }
  [[nodiscard]] DWORD WaitedMs() const { return waited_ms_; }

 private:
  std::optional<HeldFile> holder_;
  DWORD waited_ms_ = 0;
  int sleeps_until_release_ = 0;
  INTERPOSER(Sleep) sleep_;
};

// The file in place of the held one begins by saying so; these are its other texts.
std::vector<std::string> TextsInPlace(const std::wstring& file) {
  const auto records = ReadRecords(file);
  EXPECT_FALSE(records.empty());
  if (!records.empty()) {
    EXPECT_THAT(records[0].text, StartsWith("Log library "));
    EXPECT_THAT(
        records[0].text,
        EndsWith(", in place of NHUpdateManager.log, which another program keeps to itself"));
  }
  return ReadTexts(file);
}

TEST(HeldFileTest, IsTriedForHalfASecondAndThenAnotherOneTakesItsPlace) {
  for (const DWORD sharing : {DWORD{0}, DWORD{FILE_SHARE_READ}}) {
    HeldLog log("", sharing);

    const int result = log.Start();
    log.Write(L"record");
    log.LetGo();

    EXPECT_EQ(result, 0);
    EXPECT_EQ(log.WaitedMs(), 475u);
    EXPECT_EQ(ReadFileBytes(log.CurrentFile()), kEarlier);
    EXPECT_THAT(TextsInPlace(log.RotatedFile(1)), ElementsAre("record"));
  }
}

TEST(HeldFileTest, TheOneInItsPlaceCanBeWrittenToByOthersButNotDeleted) {
  HeldLog log;
  ASSERT_EQ(log.Start(), 0);

  EXPECT_FALSE(::DeleteFileW(log.RotatedFile(1).c_str()));
  const HeldFile other(log.RotatedFile(1), FILE_SHARE_READ | FILE_SHARE_WRITE, FILE_APPEND_DATA);
}

TEST(HeldFileTest, IsUsedWhenItIsLetGoInTime) {
  HeldLog log("", FILE_SHARE_READ);
  log.LetGoInSleep(19);

  const int result = log.Start();
  log.Write(L"record");

  EXPECT_EQ(result, 0);
  EXPECT_THAT(log.Texts(), ElementsAre("earlier", "record"));
  EXPECT_FALSE(Exists(log.RotatedFile(1)));
}

TEST(HeldFileTest, IsUsedAgainWithinASecondAfterItWasLetGo) {
  HeldLog log;
  FakeUptime uptime(log.Module());
  ASSERT_EQ(log.Start(), 0);

  log.Write(L"held");
  log.LetGo();
  uptime.Forward(999);
  log.Write(L"too soon to be known");
  uptime.Forward(1);
  log.Write(L"let go");

  EXPECT_THAT(log.RotatedTexts(1), ElementsAre("held", "too soon to be known"));
  EXPECT_THAT(log.Texts(), ElementsAre("earlier", "let go"));
}

TEST(HeldFileTest, IsReplacedByOneFileAfterTheOtherWhenTheseAreFull) {
  HeldLog log(kSmallFiles);
  ASSERT_EQ(log.Start(), 0);

  log.Write(kFullFile);
  log.Write(L"next");

  EXPECT_THAT(TextsInPlace(log.RotatedFile(1)), ElementsAre(kFullFileText));
  EXPECT_THAT(TextsInPlace(log.RotatedFile(2)), ElementsAre("next"));
}

// The settings may leave room for no rotated file at all.
TEST(HeldFileTest, IsReplacedByAFileThatNobodyDeletesWhileItIsWritten) {
  HeldLog log("MaxFiles=1\n");
  ASSERT_EQ(log.Start(), 0);

  log.Write(L"one");
  log.Write(L"two");

  EXPECT_FALSE(::DeleteFileW(log.RotatedFile(1).c_str()));
  EXPECT_THAT(log.RotatedTexts(1), ElementsAre("one", "two"));
}

// A name that nobody can have foreseen is tried then.
TEST(HeldFileTest, IsReplacedUnderAnotherNameWhenTheNextOneWasTakenMeanwhile) {
  for (const bool is_taken_by_a_folder : {false, true}) {
    HeldLog log;
    const INTERPOSER(CreateFileW) create(log.Module(), [&](const wchar_t* path, auto...) {
      if (path == log.RotatedFile(1) && is_taken_by_a_folder) {
        CreateFolders(path);
      } else if (path == log.RotatedFile(1)) {
        WriteFileBytes(path, "x");
      }
    });

    EXPECT_EQ(log.Start(), 0);

    EXPECT_THAT(log.Files(), SizeIs(3));
  }
}

TEST(HeldFileTest, IsReplacedUnderAnotherNameHoweverWindowsSaysThatTheNextOneIsTaken) {
  for (const DWORD error : {DWORD{ERROR_FILE_EXISTS}, DWORD{ERROR_ALREADY_EXISTS}}) {
    HeldLog log;
    const INTERPOSER(CreateFileW) create(
        log.Module(), AnswersFor(log.RotatedFile(1), INVALID_HANDLE_VALUE, error));

    EXPECT_EQ(log.Start(), 0) << error;

    EXPECT_THAT(log.Files(), SizeIs(2)) << error;
  }
}

// Whoever takes even the names that nobody could foresee gets no log, but nothing of his is
// touched.
TEST(HeldFileTest, IsNotReplacedWhenEveryNameIsTaken) {
  HeldLog log;
  const std::wstring beginning = log.Folder() + L"\\NHUpdateManager.";
  const auto is_rotated_file = [&](std::wstring_view path, auto...) {
    return path.starts_with(beginning) && path != log.CurrentFile();
  };
  const INTERPOSER(CreateFileW) create(
      log.Module(), AnswersIf(is_rotated_file, INVALID_HANDLE_VALUE, ERROR_FILE_EXISTS));

  EXPECT_EQ(log.Start(), 4);

  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.log"));
}

TEST(HeldFileTest, IsLeftAsItIsByAWriterThatGivesUp) {
  HeldLog log;
  const auto is_new = [](auto, auto, auto, auto, DWORD disposition, auto...) {
    return disposition == CREATE_NEW;
  };
  const INTERPOSER(CreateFileW) create(log.Module(),
                                       AnswersIf(is_new, INVALID_HANDLE_VALUE, ERROR_DISK_FULL));

  const int result = log.Start();
  log.Write(L"ignored");
  log.LetGo();

  EXPECT_EQ(result, 4);
  EXPECT_EQ(ReadFileBytes(log.CurrentFile()), kEarlier);
  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.log"));
}

}  // namespace
}  // namespace nhupdate_test
