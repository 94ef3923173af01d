#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/end_to_end/support/other_copy.h"
#include "tests/support/held_file.h"

namespace nhupdate_test {
namespace {

class SelfUpdateEndToEndTest : public EndToEndTest {
 protected:
  SelfUpdateEndToEndTest() { hub_.StageRelease(); }

  // A copy that runs under another name does not bring the program itself along.
  [[nodiscard]] std::wstring RenamedStagedManager() const {
    const std::wstring renamed = hub_.App() + L"\\NHUpdateManager\\Manager.exe";
    EXPECT_TRUE(::MoveFileW(hub_.StagedManager().c_str(), renamed.c_str()));
    return renamed;
  }
};

TEST_F(SelfUpdateEndToEndTest, EndsWith10WhenNotElevated) {
  ExpectGoldenRun(10, RunAs({.executable = hub_.StagedManager(),
                             .arguments = L"-self_update",
                             .is_elevated = false}));
}

TEST_F(SelfUpdateEndToEndTest, EndsWith15AndABoxWhenTheInstalledProgramIsMissing) {
  ASSERT_TRUE(::DeleteFileW(hub_.Manager().c_str()));

  ExpectGoldenRun(15, RunFrom(RenamedStagedManager(), L"-self_update"));
}

TEST_F(SelfUpdateEndToEndTest, EndsWith16AndABoxWhenTheInstalledProgramCannotBeStarted) {
  const HeldFile installed(hub_.Manager());

  ExpectGoldenRun(16, RunFrom(RenamedStagedManager(), L"-self_update"));
}

TEST_F(SelfUpdateEndToEndTest, EndsWith16AndABoxWhenAnotherCopyCannotBeStopped) {
  const COtherCopy stubborn(hub_.Scratch() + L"\\Elsewhere\\nhupdatemanager.EXE");
  NameProcess(stubborn.Id(), L"stubborn");

  ExpectGoldenRun(16, RunFrom(hub_.StagedManager(), L"-self_update"));

  EXPECT_TRUE(stubborn.IsRunning());
}

}  // namespace
}  // namespace nhupdate_test
