#include "tests/end_to_end/support/restart_test.h"

#include "tests/end_to_end/support/product_registry.h"
#include "tests/end_to_end/support/program_end.h"
#include "tests/support/files.h"

namespace nhupdate_test {

void RestartTest::PutTracesOfUse() const {
  WriteFileBytes(hub_.Base() + L"\\Plugins\\old.dll", "gone in 2.0.0");
  WriteFileBytes(hub_.Base() + L"\\Settings\\user.cfg", "the user's own");
  CreateFolders(hub_.Base() + L"\\Empty\\Emptier");
}

void RestartTest::StartAfresh(const DisturbedRun& run) const {
  RemoveTree(hub_.Root());
  RemoveTree(hub_.DataFolder() + L"\\Corvane");
  DeleteProductKeys();
  hub_.PutProduct();
  run.prepare();
}

void RestartTest::EndAndRestartAtEveryChange(const DisturbedRun& run) {
  const ProgramStart whole = {.executable = run.executable, .arguments = run.arguments};
  StartAfresh(run);
  ExpectGoldenRun(run.exit_code, RunAs(whole));
  if (IsSkipped()) {
    return;  // only the golden file is wanted
  }
  const Tree files = Files();
  const std::string product_keys = DescribeProductKeys();

  int changes = 0;
  bool has_ended_early = true;
  while (has_ended_early && !HasFailure()) {
    SCOPED_TRACE("ended before change " + std::to_string(changes + 1));
    StartAfresh(run);
    ProgramStart start = whole;
    start.end_before_change = changes + 1;

    const ProgramRun ended = RunToTheEnd(start);
    has_ended_early = ended.exit_code == kEndedBeforeChange;
    const ProgramRun last = has_ended_early ? RunToTheEnd(whole) : ended;

    changes += has_ended_early ? 1 : 0;
    EXPECT_EQ(last.exit_code, run.exit_code);
    EXPECT_EQ(DescribeChanges(files, Files()), "");
    EXPECT_EQ(DescribeProductKeys(), product_keys);
  }
  EXPECT_GE(changes, run.fewest_changes);
  RecordProperty("changes", changes);
}

}  // namespace nhupdate_test
