// What is in the way of putting a full file aside.

#include "tests/log_library/fake_uptime.h"
#include "tests/log_library/test_log.h"
#include "tests/support/held_file.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

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

TEST_F(HinderedRotationTest, StaysInTheRenamedFileWhenNoNewOneCanBeMade) {
  {
    INTERPOSER(SetFileInformationByHandle) rename(
        log_.Module(), [&](auto... all) { return rename.Original()(all...); });
    INTERPOSER(CreateFileW) create(log_.Module(), [&](auto... all) {
      if (rename.Calls() == 0) {
        return create.Original()(all...);
      }
      ::SetLastError(ERROR_DISK_FULL);
      return INVALID_HANDLE_VALUE;
    });
    log_.Write(L"no new file");
    EXPECT_EQ(rename.Calls(), 1);
  }
  EXPECT_THAT(log_.RotatedTexts(1), ElementsAre(kFullFileText, "no new file"));

  uptime_.Forward(1000);
  log_.Write(L"new file");

  EXPECT_THAT(log_.Texts(), ElementsAre("new file"));
}

}  // namespace
}  // namespace nhupdate_test
