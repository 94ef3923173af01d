#include "tests/end_to_end/support/restart_test.h"

#include <iostream>

#include "base/want_of_memory.h"
#include "tests/end_to_end/support/product_registry.h"
#include "tests/end_to_end/support/program_end.h"
#include "tests/support/files.h"
#include "tests/support/long_tests.h"

namespace nhupdate_test {

namespace {

ProgramStart StartOfEnded(const DisturbedRun& run) {
  return {.executable = run.ended_executable, .arguments = run.ended_arguments};
}

ProgramRun RunWhole(const DisturbedRun& run) {
  return RunToTheEnd({.executable = run.executable, .arguments = run.arguments});
}

std::uint64_t SizeOf(const std::wstring& file) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  ::GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data);
  return (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
}

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

void RestartTest::ExpectGoldenRunOf(const DisturbedRun& run) {
  StartAfresh(run);
  ExpectGoldenRun(run.exit_code, RunAs({.executable = run.executable, .arguments = run.arguments}));
}

RestartTest::End RestartTest::RunUndisturbed(const DisturbedRun& run) const {
  StartAfresh(run);
  EXPECT_EQ(RunWhole(run).exit_code, run.exit_code);
  return {Files(), DescribeProductKeys()};
}

bool RestartTest::EndAndRestart(const DisturbedRun& run, const End& end,
                                const ProgramStart& disturbed, DWORD exit_code) const {
  StartAfresh(run);
  run.prepare_stage();

  const DWORD ended_with = RunToTheEnd(disturbed).exit_code;
  if (ended_with != exit_code) {
    EXPECT_EQ(ended_with, run.exit_code);
    return false;
  }
  const DWORD restarted_with = RunWhole(run).exit_code;

  EXPECT_EQ(restarted_with, run.exit_code);
  EXPECT_EQ(DescribeChanges(end.files, Files()), "");
  EXPECT_EQ(DescribeProductKeys(), end.product_keys);
  return true;
}

void RestartTest::EndAndRestartAtEvery(const DisturbedRun& run, int ProgramStart::*moment,
                                       DWORD exit_code, int stride) {
  if (IsSkipped()) {
    return;  // only the golden file is wanted
  }
  const End end = RunUndisturbed(run);
  ProgramStart start = StartOfEnded(run);
  start.*moment = 1;
  int moments = 0;
  bool has_ended_early = true;
  while (has_ended_early && !HasFailure()) {
    SCOPED_TRACE("ended at moment " + std::to_string(start.*moment));
    has_ended_early = EndAndRestart(run, end, start, exit_code);
    moments += has_ended_early ? 1 : 0;
    start.*moment += IsLongTestWanted() ? 1 : stride;
  }
  EXPECT_GE(moments, run.fewest_moments);
  std::cout << "Ended at " << moments << " moments and started again.\n";
}

void RestartTest::EndAndRestartAtEveryChange(const DisturbedRun& run, int stride) {
  EndAndRestartAtEvery(run, &ProgramStart::end_before_change, kEndedByTest, stride);
}

void RestartTest::StarveAndRestart(const DisturbedRun& run, int stride) {
  EndAndRestartAtEvery(run, &ProgramStart::fail_allocation, nhupdate::kWantOfMemoryExitCode,
                       stride);
}

void RestartTest::EndAndRestartInTheCopyOf(const DisturbedRun& run, const std::wstring& file,
                                           std::uint64_t size) {
  const End end = RunUndisturbed(run);
  ProgramStart start = StartOfEnded(run);
  std::uint64_t moments = 0;
  constexpr std::uint64_t kMoments = 3;
  // On a busy machine a copy may be over before anybody has seen it.
  constexpr int kTries = 9;
  for (int attempt = 0; attempt < kTries && moments < kMoments && !HasFailure(); ++attempt) {
    SCOPED_TRACE("ended behind quarter " + std::to_string(moments + 1));
    const std::uint64_t enough = size / (kMoments + 1) * (moments + 1);
    start.end_when = [&] {
      const std::uint64_t reached = SizeOf(file);
      return reached >= enough && reached < size;
    };
    moments += EndAndRestart(run, end, start, kEndedByTest) ? 1u : 0u;
  }
  EXPECT_EQ(moments, kMoments);
  std::cout << "Ended at " << moments << " moments and started again.\n";
}

}  // namespace nhupdate_test
