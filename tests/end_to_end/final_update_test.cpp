#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/other_copy.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"

namespace nhupdate_test {
namespace {

class FinalUpdateEndToEndTest : public EndToEndTest {
 protected:
  FinalUpdateEndToEndTest() { hub_.StageRelease(); }
};

TEST_F(FinalUpdateEndToEndTest, EndsWith10WhenNotElevated) {
  ExpectGoldenRun(10, RunUnelevated(L"-final_update"));
}

TEST_F(FinalUpdateEndToEndTest, EndsWith1AndABoxWhenAnotherCopyCannotBeStopped) {
  const COtherCopy stubborn(hub_.Scratch() + L"\\Elsewhere\\NHUpdateManager.exe");
  NameProcess(stubborn.Id(), L"stubborn");

  ExpectGoldenRun(1, Run(L"-final_update"));
}

TEST_F(FinalUpdateEndToEndTest, EndsAnotherCopyThatCanBeStopped) {
  // Nothing is staged, so that the golden file is short.
  RemoveTree(hub_.App());
  const COtherCopy other(hub_.Scratch() + L"\\Elsewhere\\NHUpdateManager.exe", Ending::kAllowed);
  NameProcess(other.Id(), L"other");

  ExpectGoldenRun(0, Run(L"-final_update"));

  EXPECT_FALSE(other.IsRunning());
}

TEST_F(FinalUpdateEndToEndTest, EndsWith2AndABoxWhenAnInstalledFileIsHeld) {
  const HeldFile held(hub_.Base() + L"\\Version.txt", FILE_SHARE_READ);

  ExpectGoldenRun(2, Run(L"-final_update"));
}

TEST_F(FinalUpdateEndToEndTest, EndsWith2AndABoxWhenAStagedFileIsHeld) {
  const HeldFile held(hub_.App() + L"\\Version.txt");

  ExpectGoldenRun(2, Run(L"-final_update"));
}

// The program really waits here: the file becomes free during the 3 s before the second attempt.
TEST_F(FinalUpdateEndToEndTest, TriesAgainWhileAFileIsHeld) {
  HeldFile held(hub_.Base() + L"\\Plugins\\Cameras\\cam.dll", FILE_SHARE_READ);

  ExpectGoldenRun(
      0, RunAs({.executable = hub_.Manager(), .arguments = L"-final_update", .while_running = [&] {
                  if (LogHolds(hub_, "Copy fail, sleep 3 seconds")) {
                    held.Release();
                  }
                }}));
}

TEST_F(FinalUpdateEndToEndTest, PassesTheRunningProgramsOwnFolderOver) {
  WriteFileBytes(hub_.Module() + L"\\own.txt", "stays");

  ExpectGoldenRun(0, Run(L"-final_update"));
}

// Windows as installed takes such paths only in their extended-length form; Wine takes any form.
TEST_F(FinalUpdateEndToEndTest, ReplacesWhatLiesDeeperThan259Characters) {
  const std::wstring deep =
      L"\\Plugins\\" + std::wstring(120, L'x') + L"\\" + std::wstring(120, L'y');
  WriteFileBytes(L"\\\\?\\" + hub_.App() + deep + L"\\new.dll", "new");
  WriteFileBytes(L"\\\\?\\" + hub_.Base() + deep + L"\\old.dll", "old");

  ExpectGoldenRun(0, Run(L"-final_update"));
}

// Windows looks for programs in the current folder first, and that may be anybody's. Wine looks
// there last, but the tool tells which folder was the current one when it was started.
TEST_F(FinalUpdateEndToEndTest, StartsTheSystemsToolAndNotOneInTheCurrentFolder) {
  hub_.PutStandIn(L"recording_icacls", hub_.Module() + L"\\ICACLS.exe");

  ExpectGoldenRun(0, Run(L"-final_update"));
}

}  // namespace
}  // namespace nhupdate_test
