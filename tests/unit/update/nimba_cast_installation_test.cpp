#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

using testing::IsEmpty;

const Lines kBeginLine = {L"2|Install NCS begin."};

// The updater's folder holds the updater, which "downloads" a manager by already having it.
Lines CopyUpdaterLines() {
  const std::wstring from = L"{root}\\Nimba Hub\\Updater";
  const std::wstring to = L"{root}\\NimbaCast\\Updater";
  const std::wstring manager = L"\\App\\CSUpdateManager";
  return {
      L"2|Copy folder from " + from + L" to " + to,
      L"2|Copy folder from " + from + L"\\App to " + to + L"\\App",
      L"2|Copy folder from " + from + manager + L" to " + to + manager,
      L"2|Copy file from " + from + manager + L"\\CSUpdateManager.exe to " + to + manager +
          L"\\CSUpdateManager.exe",
      L"2|Copy file from " + from + L"\\Updater.exe to " + to + L"\\Updater.exe",
  };
}

Lines CopyManagerLines() {
  const std::wstring from = L"{root}\\NimbaCast\\Updater\\App\\CSUpdateManager";
  const std::wstring to = L"{root}\\NimbaCast\\CSUpdateManager";
  return {
      L"2|Copy folder from " + from + L" to " + to,
      L"2|Copy file from " + from + L"\\CSUpdateManager.exe to " + to + L"\\CSUpdateManager.exe"};
}

Lines UntilDownload() {
  return Join({kBeginLine, CopyUpdaterLines(), DownloadNimbaCastLines()});
}

Lines UntilInstall() {
  return Join(
      {UntilDownload(),
       {L"2|Launch updater success for download.", L"2|Updater exit = 0", L"2|Download success."},
       CopyManagerLines(),
       InstallNimbaCastLines()});
}

class NimbaCastInstallationTest : public WorkflowTest {
 protected:
  NimbaCastInstallationTest() {
    AddUpdater();
    AddFile(L"\\Updater\\App\\CSUpdateManager\\CSUpdateManager.exe");
  }

  ~NimbaCastInstallationTest() override { EXPECT_THAT(boxes_.Shown(), IsEmpty()); }

  std::wstring NimbaCast() { return product_.Root() + L"\\NimbaCast"; }
};

TEST_F(NimbaCastInstallationTest, GivesItAnUpdaterDownloadsAndInstalls) {
  ScriptedShell shell({EndsWith(0), EndsWith(0)});

  const int result = Manager().InstallNimbaCast();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            Join({UntilInstall(),
                  {L"2|Launch CSUpdateManager success for install.", L"2|CSUpdateManager exit = 0",
                   L"2|Install success.", L"2|Install NCS end."}}));
}

TEST_F(NimbaCastInstallationTest, EndsWhenTheUpdaterCannotBeCopied) {
  ScriptedShell shell({});
  Interposer<decltype(::CopyFileW)> copy("CopyFileW",
                                         [](const wchar_t*, const wchar_t*, BOOL) -> BOOL {
                                           ::SetLastError(ERROR_DISK_FULL);
                                           return FALSE;
                                         });

  const int result = Manager().InstallNimbaCast();

  Lines failed_copy = CopyUpdaterLines();
  failed_copy.pop_back();
  EXPECT_EQ(result, 14);
  EXPECT_EQ(product_.Transcript(),
            Join({kBeginLine,
                  failed_copy,
                  {L"4|Fail to copy file = 112", L"4|Failed to copy NCS updater folder."}}));
  EXPECT_EQ(copy.Calls(), 1);
}

TEST_F(NimbaCastInstallationTest, EndsWhenThereIsNoUpdater) {
  ::DeleteFileW((product_.Base() + L"\\Updater\\Updater.exe").c_str());
  ScriptedShell shell({});

  const int result = Manager().InstallNimbaCast();

  EXPECT_EQ(result, 14);
  EXPECT_EQ(product_.Transcript().back(),
            L"4|Update.exe not found : {root}\\NimbaCast\\Updater\\Updater.exe");
}

TEST_F(NimbaCastInstallationTest, EndsWhenTheDownloadFails) {
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

    const int result = Manager().InstallNimbaCast();

    EXPECT_EQ(result, 13);
    EXPECT_EQ(product_.Transcript(), Join({UntilDownload(), test_case.lines}));
    EXPECT_FALSE(nhupdate::Exists(NimbaCast() + L"\\CSUpdateManager"));
  }
}

TEST_F(NimbaCastInstallationTest, GoesOnWhenTheExitCodeOfTheDownloadCannotBeRead) {
  ScriptedShell shell({EndsUnreadably(), EndsWith(0)});

  const int result = Manager().InstallNimbaCast();

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            Join({UntilDownload(),
                  {L"2|Launch updater success for download."},
                  CopyManagerLines(),
                  InstallNimbaCastLines(),
                  {L"2|Launch CSUpdateManager success for install.", L"2|CSUpdateManager exit = 0",
                   L"2|Install success.", L"2|Install NCS end."}}));
}

TEST_F(NimbaCastInstallationTest, InstallsWithTheManagerThatIsThereWhenTheNewOneCannotBeCopied) {
  WriteFileBytes(NimbaCast() + L"\\CSUpdateManager\\CSUpdateManager.exe", "old");
  ScriptedShell shell({EndsWith(0), EndsWith(0)});
  const std::wstring target = NimbaCast() + L"\\CSUpdateManager\\CSUpdateManager.exe";
  Interposer<decltype(::CopyFileW)> copy(
      "CopyFileW", [&](const wchar_t* from, const wchar_t* to, BOOL fail_if_exists) {
        if (to != target) {
          return copy.Original()(from, to, fail_if_exists);
        }
        ::SetLastError(ERROR_SHARING_VIOLATION);
        return FALSE;
      });

  const int result = Manager().InstallNimbaCast();

  EXPECT_EQ(result, 0);
  EXPECT_THAT(product_.Transcript(), testing::Contains(L"4|Fail to copy file = 32"));
  EXPECT_EQ(ReadFileBytes(target), "old");
}

TEST_F(NimbaCastInstallationTest, EndsWithoutAManager) {
  RemoveTree(product_.App());
  ScriptedShell shell({EndsWith(0)});

  const int result = Manager().InstallNimbaCast();

  EXPECT_EQ(result, 17);
  EXPECT_EQ(product_.Transcript().back(),
            L"4|CSUpdateManager.exe not found : "
            L"{root}\\NimbaCast\\CSUpdateManager\\CSUpdateManager.exe");
}

TEST_F(NimbaCastInstallationTest, JudgesTheManager) {
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

    const int result = Manager().InstallNimbaCast();

    EXPECT_EQ(result, test_case.result);
    EXPECT_EQ(product_.Transcript(), Join({UntilInstall(), test_case.lines}));
  }
}

}  // namespace
}  // namespace nhupdate_test
