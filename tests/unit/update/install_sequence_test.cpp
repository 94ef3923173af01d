#include <gtest/gtest.h>

#include "base/existence.h"
#include "tests/support/scratch_local_machine.h"
#include "tests/support/scripted_processes.h"
#include "tests/unit/update/workflow_test.h"

// These need <windows.h> first.
#include <objbase.h>
#include <shlobj.h>

namespace nhupdate_test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kInstallation = 0;
constexpr int kLastUpdateStage = 1;
constexpr DWORD kStubborn = 4242;

const Lines kStoppedLines = {L"2|Target process NHUpdateManager.exe not found.",
                             L"2|Stop associates OK."};
const Lines kNotStoppedLines = {L"2|Target process NHUpdateManager.exe(4242) found, terminate it.",
                                L"4|Process NHUpdateManager.exe(4242) still found.",
                                L"4|Fail to terminate NHUpdateManager.",
                                L"4|Fail to stop associates."};

Lines GrantLine(const std::wstring& folder) {
  return {L"2|ShellExecute ICACLS success on ICACLS.exe, Params = \"" + folder +
          L"\" /grant \"*S-1-5-32-545\":(OI)(CI)F /inheritance:e, Return Code = 42"};
}

Lines GrantLines() {
  return Join({GrantLine(L"{root}\\Nimba Hub\\Updater\\Config"),
               GrantLine(L"{root}\\Nimba Hub\\Updater\\Temp"), GrantLine(L"{data}\\Corvane")});
}

// One file is staged, and an old one is installed.
const Lines kCopyLines = {
    L"2|Delete OK : {root}\\Nimba Hub\\old.txt",
    L"2|Copy OK : {root}\\Nimba Hub\\Updater\\App\\new.txt => {root}\\Nimba Hub\\new.txt",
    L"2|Copy folder from {root}\\Nimba Hub\\Updater\\App to {root}\\Nimba Hub",
    L"2|Copy file from {root}\\Nimba Hub\\Updater\\App\\new.txt to {root}\\Nimba Hub\\new.txt",
    L"2|Copy complete.",
    L"2|Copy files OK.",
};
const Lines kNotCopiedLines = {
    L"2|Delete OK : {root}\\Nimba Hub\\old.txt",
    L"4|Fail to copy (112) : {root}\\Nimba Hub\\Updater\\App\\new.txt => "
    L"{root}\\Nimba Hub\\new.txt",
    L"4|Fail to copy files.",
};
const Lines kRegisteredLines = {
    L"2|Nimba Hub registry set.",
    L"2|NHUpdateManager crash dump folder set to : {data}\\Corvane\\NimbaSoftware\\NimbaHub\\Log",
    L"2|Update registry OK.",
};
const Lines kRemoveLines = {L"2|Remove empty folder in path : {root}\\Nimba Hub"};

// There is no updater for NimbaCast.
Lines NimbaCastLines() {
  return Join({{L"2|Install NCS begin."},
               DownloadNimbaCastLines(),
               {L"4|Update.exe not found : {root}\\NimbaCast\\Updater\\Updater.exe",
                L"2|Install ND begin.", L"2|Install ND end."}});
}

class InstallSequenceTest : public WorkflowTest {
 protected:
  explicit InstallSequenceTest(const ProductOptions& options = {})
      : WorkflowTest(options),
        known_folder_("SHGetKnownFolderPath",
                      [this](REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) -> HRESULT {
                        const std::wstring folder = product_.ProgramData();
                        *path = static_cast<wchar_t*>(
                            ::CoTaskMemAlloc((folder.size() + 1) * sizeof(wchar_t)));
                        folder.copy(*path, folder.size());
                        (*path)[folder.size()] = L'\0';
                        return S_OK;
                      }),
        execute_("ShellExecuteW",
                 [](HWND, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, int) {
                   return reinterpret_cast<HINSTANCE>(INT_PTR{42});
                 }) {
    AddFile(L"\\old.txt");
    AddFile(L"\\Updater\\App\\new.txt");
    AddFile(L"\\Updater\\Config\\ut.ini");
    AddFile(L"\\Updater\\Temp\\part.bin");
  }

  // The records without those of copying the updater's folder for NimbaCast.
  Lines TranscriptWithoutNimbaCastCopy() {
    Lines lines = product_.Transcript();
    std::erase_if(lines, [](const std::wstring& line) {
      return line.starts_with(L"2|Copy ") && line.find(L" to {root}\\NimbaCast") != line.npos;
    });
    return lines;
  }

  bool NimbaCastFolderExists() { return nhupdate::Exists(product_.Root() + L"\\NimbaCast"); }

  Interposer<decltype(::SHGetKnownFolderPath)> known_folder_;
  Interposer<decltype(::ShellExecuteW)> execute_;
  ScriptedProcesses no_processes_;
  ScratchLocalMachine local_machine_;
};

ScriptedProcess StubbornCopy() {
  return {.id = kStubborn, .path = L"C:\\NHUpdateManager.exe", .refuses_to_end = true};
}

BOOL FailWithDiskFull(const wchar_t*, const wchar_t*, BOOL) {
  ::SetLastError(ERROR_DISK_FULL);
  return FALSE;
}

TEST_F(InstallSequenceTest, InstallsAndThenInstallsTheSibling) {
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(kInstallation);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(TranscriptWithoutNimbaCastCopy(), Join({{L"2|Function : Install"},
                                                    kStoppedLines,
                                                    GrantLines(),
                                                    kCopyLines,
                                                    kRegisteredLines,
                                                    NimbaCastLines()}));
  EXPECT_EQ(local_machine_.Text(L"SOFTWARE\\WOW6432Node\\CorvaneNimbaHub", L"AppPath"),
            product_.Root());
}

TEST_F(InstallSequenceTest, EndsAnUpdateByRemovingEmptyFolders) {
  CreateFolders(product_.Base() + L"\\Empty\\Inner");
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(kLastUpdateStage);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            Join({kStoppedLines,
                  GrantLines(),
                  kCopyLines,
                  kRegisteredLines,
                  kRemoveLines,
                  {L"2|Remove empty folder : {root}\\Nimba Hub\\Empty\\Inner",
                   L"2|Remove empty folder : {root}\\Nimba Hub\\Empty"}}));
  EXPECT_FALSE(nhupdate::Exists(product_.Base() + L"\\Empty"));
  EXPECT_FALSE(NimbaCastFolderExists());
}

TEST_F(InstallSequenceTest, RemovesNoEmptyFolderAtAnInstallation) {
  CreateFolders(product_.Base() + L"\\Empty\\Inner");
  ScriptedShell shell({});

  std::ignore = Manager().InstallSequence(kInstallation);

  EXPECT_TRUE(nhupdate::Exists(product_.Base() + L"\\Empty\\Inner"));
}

TEST_F(InstallSequenceTest, ForgetsTheFoldersItRemoved) {
  CreateFolders(product_.Base() + L"\\Empty");
  ScriptedShell shell({});
  std::ignore = Manager().InstallSequence(kLastUpdateStage);
  AddFile(L"\\Empty\\file.txt");

  std::ignore = Manager().InstallSequence(kLastUpdateStage);

  EXPECT_TRUE(nhupdate::Exists(product_.Base() + L"\\Empty\\file.txt"));
}

TEST_F(InstallSequenceTest, NeitherCopiesNorRegistersBesideAnotherCopyAtAnInstallation) {
  ScriptedProcesses processes({StubbornCopy()});
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(kInstallation);

  EXPECT_EQ(result, 1);
  EXPECT_EQ(TranscriptWithoutNimbaCastCopy(),
            Join({{L"2|Function : Install"}, kNotStoppedLines, GrantLines(), NimbaCastLines()}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(kNeedStopText)));
  EXPECT_TRUE(local_machine_.IsEmpty());
  EXPECT_TRUE(nhupdate::Exists(product_.Base() + L"\\old.txt"));
}

TEST_F(InstallSequenceTest, NeitherCopiesNorRegistersBesideAnotherCopyAfterAnUpdate) {
  ScriptedProcesses processes({StubbornCopy()});
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(kLastUpdateStage);

  EXPECT_EQ(result, 1);
  EXPECT_EQ(product_.Transcript(), Join({kNotStoppedLines, GrantLines(), kRemoveLines}));
  EXPECT_TRUE(local_machine_.IsEmpty());
}

TEST_F(InstallSequenceTest, DoesNotRegisterWhatWasNotCopiedAtAnInstallation) {
  ScriptedShell shell({});
  Interposer<decltype(::CopyFileW)> copy("CopyFileW", FailWithDiskFull);

  const int result = Manager().InstallSequence(kInstallation);

  EXPECT_EQ(result, 2);
  Lines lines = TranscriptWithoutNimbaCastCopy();
  const Lines expected = Join(
      {{L"2|Function : Install"},
       kStoppedLines,
       GrantLines(),
       kNotCopiedLines,
       {L"2|Install NCS begin.", L"4|Fail to copy file = 112",
        L"4|Failed to copy NCS updater folder.", L"2|Install ND begin.", L"2|Install ND end."}});
  EXPECT_EQ(lines, expected);
  EXPECT_TRUE(local_machine_.IsEmpty());
}

TEST_F(InstallSequenceTest, DoesNotRegisterWhatWasNotCopiedAfterAnUpdate) {
  ScriptedShell shell({});
  Interposer<decltype(::CopyFileW)> copy("CopyFileW", FailWithDiskFull);

  const int result = Manager().InstallSequence(kLastUpdateStage);

  EXPECT_EQ(result, 2);
  EXPECT_EQ(product_.Transcript(),
            Join({kStoppedLines, GrantLines(), kNotCopiedLines, kRemoveLines}));
  EXPECT_THAT(boxes_.Shown(), ElementsAre(ErrorBoxOf(std::wstring(kCommonErrorText) + L"\n" +
                                                     product_.Base() + L"\\new.txt")));
  EXPECT_TRUE(local_machine_.IsEmpty());
}

TEST_F(InstallSequenceTest, CallsAnInstallationDoneWhoseRegistrationFailed) {
  ScriptedShell shell({});
  Interposer<decltype(::RegSetValueExW)> set_value(
      "RegSetValueExW", [](HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD) {
        return LSTATUS{ERROR_ACCESS_DENIED};
      });

  const int result = Manager().InstallSequence(kLastUpdateStage);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(set_value.Calls(), 12);
  EXPECT_THAT(product_.Transcript(), Contains(L"2|Update registry OK."));
}

class InstallWithoutElevationTest : public InstallSequenceTest {
 protected:
  InstallWithoutElevationTest() : InstallSequenceTest({.elevated = false}) {}
};

TEST_F(InstallWithoutElevationTest, EndsAnInstallationBeforeAnythingIsStopped) {
  ScriptedProcesses processes({{kStubborn, L"C:\\NHUpdateManager.exe"}});
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(kInstallation);

  EXPECT_EQ(result, 10);
  EXPECT_EQ(product_.Transcript(),
            Lines({L"2|Function : Install", L"4|Process not been elevated for install."}));
  EXPECT_EQ(processes.Enumerations(), 0);
  EXPECT_FALSE(NimbaCastFolderExists());
  EXPECT_THAT(boxes_.Shown(), IsEmpty());
}

TEST_F(InstallWithoutElevationTest, LeavesTheTestToTheCallerAfterAnUpdateButGrantsNothing) {
  ScriptedShell shell({});

  const int result = Manager().InstallSequence(kLastUpdateStage);

  EXPECT_EQ(result, 0);
  EXPECT_EQ(product_.Transcript(),
            Join({kStoppedLines, kCopyLines, kRegisteredLines, kRemoveLines}));
  EXPECT_EQ(execute_.Calls(), 0);
}

}  // namespace
}  // namespace nhupdate_test
