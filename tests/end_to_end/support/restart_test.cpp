#include "tests/end_to_end/support/restart_test.h"

#include "tests/end_to_end/support/product_registry.h"
#include "tests/end_to_end/support/program_end.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

constexpr int kMoreChangesThanThereAre = 500;

}  // namespace

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

int RestartTest::EndAndRestartAtEveryChange(const DisturbedRun& run) {
  const ProgramStart whole = {.executable = run.executable, .arguments = run.arguments};
  StartAfresh(run);
  ExpectGoldenRun(run.exit_code, RunAs(whole));
  if (IsSkipped()) {
    return kMoreChangesThanThereAre;  // only the golden file is wanted
  }
  const Tree files = Files();
  const std::string product_keys = DescribeProductKeys();

  for (int change = 1; change < kMoreChangesThanThereAre && !HasFailure(); ++change) {
    SCOPED_TRACE("ended before change " + std::to_string(change));
    StartAfresh(run);
    ProgramStart start = whole;
    start.end_before_change = change;

    const ProgramRun ended = RunToTheEnd(start);
    if (ended.exit_code != kEndedBeforeChange) {
      EXPECT_EQ(ended.exit_code, run.exit_code);
      return change - 1;
    }
    const ProgramRun restarted = RunToTheEnd(whole);

    EXPECT_EQ(restarted.exit_code, run.exit_code);
    EXPECT_EQ(DescribeChanges(files, Files()), "");
    EXPECT_EQ(DescribeProductKeys(), product_keys);
  }
  return 0;
}

}  // namespace nhupdate_test
