#include "tests/end_to_end/support/restart_test.h"

#include "base/want_of_memory.h"
#include "tests/end_to_end/support/product_registry.h"
#include "tests/end_to_end/support/program_end.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

constexpr int kMoreThanThereAre = 50'000;

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

RestartTest::End RestartTest::RunUndisturbed(const DisturbedRun& run) {
  StartAfresh(run);
  ExpectGoldenRun(run.exit_code, RunAs({.executable = run.executable, .arguments = run.arguments}));
  return {Files(), DescribeProductKeys()};
}

bool RestartTest::EndAndRestart(const DisturbedRun& run, const End& end,
                                const ProgramStart& disturbed, DWORD exit_code) const {
  StartAfresh(run);

  const ProgramRun ended = RunToTheEnd(disturbed);
  if (ended.exit_code != exit_code) {
    EXPECT_EQ(ended.exit_code, run.exit_code);
    return false;
  }
  const ProgramRun restarted =
      RunToTheEnd({.executable = run.executable, .arguments = run.arguments});

  EXPECT_EQ(restarted.exit_code, run.exit_code);
  EXPECT_EQ(DescribeChanges(end.files, Files()), "");
  EXPECT_EQ(DescribeProductKeys(), end.product_keys);
  return true;
}

int RestartTest::EndAndRestartAtEveryChange(const DisturbedRun& run) {
  const End end = RunUndisturbed(run);
  ProgramStart start = {.executable = run.executable, .arguments = run.arguments};
  for (int change = 1; change < kMoreThanThereAre && !HasFailure() && !IsSkipped(); ++change) {
    SCOPED_TRACE("ended before change " + std::to_string(change));
    start.end_before_change = change;
    if (!EndAndRestart(run, end, start, kEndedBeforeChange)) {
      return change - 1;
    }
  }
  return IsSkipped() ? kMoreThanThereAre : 0;  // only the golden file is wanted
}

int RestartTest::StarveAndRestart(const DisturbedRun& run, int stride) {
  const End end = RunUndisturbed(run);
  ProgramStart start = {.executable = run.executable, .arguments = run.arguments};
  int times = 0;
  for (int allocation = 1; allocation < kMoreThanThereAre && !HasFailure() && !IsSkipped();
       allocation += stride) {
    SCOPED_TRACE("no memory at allocation " + std::to_string(allocation));
    start.fail_allocation = allocation;
    if (!EndAndRestart(run, end, start, nhupdate::kWantOfMemoryExitCode)) {
      return times;
    }
    ++times;
  }
  return IsSkipped() ? kMoreThanThereAre : 0;
}

}  // namespace nhupdate_test
