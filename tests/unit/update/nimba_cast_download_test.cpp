// The NimbaCast installation as a whole, and what can go wrong up to the download.

#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/support/failing_copy.h"
#include "tests/unit/update/nimba_cast_installation_test.h"

namespace nhupdate_test {
namespace {

class NimbaCastDownloadTest : public NimbaCastInstallationTest {};

TEST_F(NimbaCastDownloadTest, BringsAnUpdaterAndIsFollowedByTheInstallation) {
  ScriptedShell shell({EndsWith(0), EndsWith(0)});

  const int result = InstallNimbaCast();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(), Join({UntilInstall(), InstalledLines()}));
}

TEST_F(NimbaCastDownloadTest, EndsWhenTheUpdaterCannotBeCopied) {
  ScriptedShell shell({});
  const FailingCopy copy(ERROR_DISK_FULL);

  const int result = InstallNimbaCast();

  Lines failed_copy = CopyUpdaterLines();
  failed_copy.pop_back();
  EXPECT_EQ(result, 14);
  EXPECT_EQ(product_.Transcript(),
            Join({BeginLine(),
                  failed_copy,
                  {L"4|Fail to copy file = 112", L"4|Failed to copy NCS updater folder."}}));
  EXPECT_EQ(copy.Calls(), 1);
}

TEST_F(NimbaCastDownloadTest, EndsWhenThereIsNoUpdater) {
  RemoveUpdater();
  ScriptedShell shell({});

  const int result = InstallNimbaCast();

  Lines copy_without_updater = CopyUpdaterLines();
  copy_without_updater.pop_back();
  EXPECT_EQ(result, 14);
  EXPECT_EQ(product_.Transcript(),
            Join({BeginLine(),
                  copy_without_updater,
                  DownloadNimbaCastLines(),
                  {L"4|Update.exe not found : {root}\\NimbaCast\\Updater\\Updater.exe"}}));
}

TEST_F(NimbaCastDownloadTest, EndsWhenTheDownloadFails) {
  struct Case {
    ShellAnswer answer;
    Lines lines;
  };
  const Lines started = {L"2|Launch updater success for download."};
  const Case cases[] = {
      {FailsWith(ERROR_ACCESS_DENIED), {L"4|Fail to launch updater for download : 5"}},
      {EndsWith(1), Join({started, {L"2|Updater exit = 1", L"4|Download failed."}})},
      {EndsWith(0xFFFFFFFF), Join({started, {L"2|Updater exit = -1", L"4|Download failed."}})},
  };
  for (const Case& test_case : cases) {
    RemoveTree(NimbaCast());
    product_.ForgetRecords();
    ScriptedShell shell({test_case.answer});

    const int result = InstallNimbaCast();

    EXPECT_EQ(result, 13);
    EXPECT_EQ(product_.Transcript(), Join({UntilDownload(), test_case.lines}));
    EXPECT_FALSE(nhupdate::Exists(NimbaCast() + L"\\CSUpdateManager"));
  }
}

TEST_F(NimbaCastDownloadTest, GoesOnWhenTheExitCodeOfTheDownloadCannotBeRead) {
  ScriptedShell shell({EndsUnreadably(), EndsWith(0)});

  const int result = InstallNimbaCast();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(), Join({UntilDownload(),
                                         {L"2|Launch updater success for download."},
                                         CopyManagerLines(),
                                         InstallNimbaCastLines(),
                                         InstalledLines()}));
}

}  // namespace
}  // namespace nhupdate_test
