// What is in the way of putting a full file aside.

#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/test_log.h"

namespace nhupdate_test {
namespace {

constexpr DWORD kShareWriting = FILE_SHARE_READ | FILE_SHARE_WRITE;

// A log whose file is full.
class HinderedRotationTest : public testing::Test {
 protected:
  HinderedRotationTest() { log_.Write(kFullFile); }

  StartedLog log_{kSmallFiles};
  FakeUptime uptime_{log_.Module()};
};

TEST_F(HinderedRotationTest, AReaderThatSharesDeletionIsNotInTheWay) {
  const HeldFile reader(log_.CurrentFile(), kShareWriting | FILE_SHARE_DELETE);

  log_.Write(L"next");

  EXPECT_THAT(log_.Texts(), ElementsAre("next"));
}

TEST_F(HinderedRotationTest, AnyReaderThatAllowsWritingCanOpenTheLog) {
  const HeldFile reader(log_.CurrentFile(), kShareWriting);
}

TEST_F(HinderedRotationTest, GoesOnInTheSameFileWhileAReaderForbidsTheRename) {
  HeldFile reader(log_.CurrentFile(), kShareWriting);

  log_.Write(L"second");
  reader.Release();
  log_.Write(L"third");  // too soon for another try
  uptime_.Forward(1000);
  log_.Write(L"fourth");

  EXPECT_THAT(log_.RotatedTexts(1), ElementsAre(kFullFileText, "second", "third"));
  EXPECT_THAT(log_.Texts(), ElementsAre("fourth"));
}

TEST_F(HinderedRotationTest, TriesARenameThatFailedOnlyOnceASecond) {
  const INTERPOSER(SetFileInformationByHandle) rename(log_.Module(),
                                                      Answers(FALSE, ERROR_ACCESS_DENIED));

  for (int record = 0; record < 100; ++record) {
    log_.Write(L"record");
  }
  uptime_.Forward(999);
  log_.Write(L"still too soon");
  EXPECT_EQ(rename.Calls(), 1);
  uptime_.Forward(1);
  log_.Write(L"last");

  EXPECT_EQ(rename.Calls(), 2);
  EXPECT_EQ(log_.Texts().size(), 103u);
}

// On a file system that doesn't number its files this one is like all others.
TEST_F(HinderedRotationTest, RenamesNothingWhenItCantBeFoundOutWhatWouldBeRenamed) {
  INTERPOSER(GetFileInformationByHandle) inspect(
      log_.Module(), [&](HANDLE file, BY_HANDLE_FILE_INFORMATION* information) -> BOOL {
        const BOOL done = inspect.Original()(file, information);
        information->dwVolumeSerialNumber = 0;
        information->nFileIndexHigh = 0;
        information->nFileIndexLow = 0;
        return inspect.Calls() == 2 ? FALSE : done;  // the first time it was opened for writing
      });
  const INTERPOSER(SetFileInformationByHandle) rename(log_.Module());

  log_.Write(L"next");
  EXPECT_EQ(rename.Calls(), 0);
  EXPECT_THAT(log_.Texts(), ElementsAre(kFullFileText, "next"));
  uptime_.Forward(1000);
  log_.Write(L"a second later");

  EXPECT_EQ(rename.Calls(), 1);
  EXPECT_THAT(log_.Texts(), ElementsAre("a second later"));
}

TEST_F(HinderedRotationTest, StaysInTheRenamedFileWhenNoNewOneCanBeMade) {
  {
    const INTERPOSER(SetFileInformationByHandle) rename(log_.Module());
    const INTERPOSER(CreateFileW) create(
        log_.Module(), AnswersIf([&](auto...) { return rename.Calls() > 0; }, INVALID_HANDLE_VALUE,
                                 ERROR_DISK_FULL));
    log_.Write(L"no new file");
    EXPECT_EQ(rename.Calls(), 1);
  }
  EXPECT_THAT(log_.RotatedTexts(1), ElementsAre(kFullFileText, "no new file"));

  uptime_.Forward(1000);
  log_.Write(L"new file");

  EXPECT_THAT(log_.Texts(), ElementsAre("new file"));
}

// The file was deleted, and neither it nor its name can be had.
TEST(FailedRotationTest, DeletesNoOldFiles) {
  StartedLog log("MaxFiles=1\n");
  WriteFileBytes(log.RotatedFile(1), "x");
  INTERPOSER(GetFileInformationByHandleEx) inspect(
      log.Module(),
      [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* information, DWORD size) {
        const BOOL done = inspect.Original()(file, kind, information, size);
        if (kind == FileStandardInfo) {
          static_cast<FILE_STANDARD_INFO*>(information)->DeletePending = TRUE;
        }
        return done;
      });
  const INTERPOSER(SetFileInformationByHandle) rename(log.Module(),
                                                      Answers(FALSE, ERROR_ACCESS_DENIED));
  const INTERPOSER(CreateFileW) open(
      log.Module(),
      AnswersIf([&](const wchar_t* path,
                    auto...) { return rename.Calls() > 0 && path == log.CurrentFile(); },
                INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED));

  log.Write(L"record");

  EXPECT_EQ(rename.Calls(), 1);
  EXPECT_THAT(log.Files(), ElementsAre(L"NHUpdateManager.1.log", L"NHUpdateManager.log"));
}

}  // namespace
}  // namespace nhupdate_test
