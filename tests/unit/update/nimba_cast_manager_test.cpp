// What the NimbaCast installation does with NimbaCast's own manager.

#include <gtest/gtest.h>

#include "tests/support/failing_copy.h"
#include "tests/unit/update/nimba_cast_installation_test.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

class NimbaCastSetupTest : public NimbaCastInstallationTest {};

TEST_F(NimbaCastSetupTest, InstallsWithTheManagerThatIsThereWhenTheNewOneCannotBeCopied) {
  WriteFileBytes(NimbaCast() + L"\\CSUpdateManager\\CSUpdateManager.exe", "old");
  ScriptedShell shell({EndsWith(0), EndsWith(0)});
  const std::wstring target = NimbaCast() + L"\\CSUpdateManager\\CSUpdateManager.exe";
  const FailingCopy copy(ERROR_SHARING_VIOLATION,
                         [&](const std::wstring& file) { return file == target; });

  const int result = InstallNimbaCast();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(), Join({UntilDownload(),
                                         DownloadedLines(),
                                         CopyManagerLines(),
                                         {L"4|Fail to copy file = 32"},
                                         InstallNimbaCastLines(),
                                         InstalledLines()}));
  EXPECT_EQ(ReadFileBytes(target), "old");
}

TEST_F(NimbaCastSetupTest, CopiesSubFoldersOverThoseThatAreThere) {
  const std::wstring config = NimbaCast() + L"\\CSUpdateManager\\Config";
  WriteFileBytes(product_.App() + L"\\CSUpdateManager\\Config\\both.txt", "new");
  WriteFileBytes(product_.App() + L"\\CSUpdateManager\\Config\\new.txt", "new");
  WriteFileBytes(config + L"\\both.txt", "old");
  WriteFileBytes(config + L"\\old.txt", "old");
  ScriptedShell shell({EndsWith(0), EndsWith(0)});

  const int result = InstallNimbaCast();

  EXPECT_EQ(result, 0);
  EXPECT_THAT(ListTree(config), ElementsAre(L"both.txt", L"new.txt", L"old.txt"));
  EXPECT_EQ(ReadFileBytes(config + L"\\both.txt"), "new");
}

TEST_F(NimbaCastSetupTest, EndsWithoutAManager) {
  RemoveTree(product_.App());
  ScriptedShell shell({EndsWith(0)});

  const int result = InstallNimbaCast();

  EXPECT_EQ(result, 17);
  EXPECT_EQ(product_.Transcript(),
            Join({BeginLine(),
                  {CopyUpdaterLines().front(), CopyUpdaterLines().back()},
                  DownloadNimbaCastLines(),
                  DownloadedLines(),
                  {CopyManagerLines().front()},
                  InstallNimbaCastLines(),
                  {L"4|CSUpdateManager.exe not found : "
                   L"{root}\\NimbaCast\\CSUpdateManager\\CSUpdateManager.exe"}}));
}

TEST_F(NimbaCastSetupTest, JudgesTheManager) {
  struct Case {
    ShellAnswer answer;
    int result;
    Lines lines;
  };
  const Lines started = {L"2|Launch CSUpdateManager success for install."};
  const Case cases[] = {
      {FailsWith(ERROR_FILE_NOT_FOUND), 18, {L"4|Fail to launch CSUpdateManager for install : 2"}},
      {EndsWith(1), 18, Join({started, {L"2|CSUpdateManager exit = 1", L"4|Install failed."}})},
      {EndsWith(0x80000000), 18,
       Join({started, {L"2|CSUpdateManager exit = -2147483648", L"4|Install failed."}})},
      {EndsUnreadably(), 0, Join({started, {L"2|Install NCS end."}})},
      {HandedOver(), 0, Join({started, {L"2|Install NCS end."}})},
  };
  for (const Case& test_case : cases) {
    product_.ForgetRecords();
    ScriptedShell shell({EndsWith(0), test_case.answer});

    const int result = InstallNimbaCast();

    EXPECT_EQ(result, test_case.result);
    EXPECT_EQ(product_.Transcript(), Join({UntilInstall(), test_case.lines}));
  }
}

}  // namespace
}  // namespace nhupdate_test
