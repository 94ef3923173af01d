#include "tests/end_to_end/support/restart_test.h"

#include "base/want_of_memory.h"
#include "tests/end_to_end/support/product_registry.h"
#include "tests/end_to_end/support/program_end.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

constexpr int kMoreThanThereAre = 50'000;

ProgramStart StartOfEnded(const DisturbedRun& run) {
  return {.executable = run.ended_executable, .arguments = run.ended_arguments};
}

std::uint64_t SizeOf(const std::wstring& file) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  ::GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data);
  return (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
}

}  // namespace

int RestartTest::StrideUnlessLong(int stride) {
  return ::GetEnvironmentVariableW(L"NHUPDATE_LONG_TESTS", nullptr, 0) != 0 ? 1 : stride;
}

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
  const ProgramRun undisturbed =
      RunToTheEnd({.executable = run.executable, .arguments = run.arguments});
  EXPECT_EQ(undisturbed.exit_code, run.exit_code);
  return {Files(), DescribeProductKeys()};
}

bool RestartTest::EndAndRestart(const DisturbedRun& run, const End& end,
                                const ProgramStart& disturbed, DWORD exit_code) const {
  StartAfresh(run);
  run.prepare_stage();

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

int RestartTest::EndAndRestartAtEveryChange(const DisturbedRun& run, int stride) const {
  if (IsSkipped()) {
    return kMoreThanThereAre;  // only the golden file is wanted
  }
  const End end = RunUndisturbed(run);
  ProgramStart start = StartOfEnded(run);
  int times = 0;
  for (int change = 1; change < kMoreThanThereAre && !HasFailure(); change += stride) {
    SCOPED_TRACE("ended before change " + std::to_string(change));
    start.end_before_change = change;
    if (!EndAndRestart(run, end, start, kEndedByTest)) {
      return times;
    }
    ++times;
  }
  return 0;
}

int RestartTest::StarveAndRestart(const DisturbedRun& run, int stride) const {
  const End end = RunUndisturbed(run);
  ProgramStart start = StartOfEnded(run);
  int times = 0;
  for (int allocation = 1; allocation < kMoreThanThereAre && !HasFailure(); allocation += stride) {
    SCOPED_TRACE("no memory at allocation " + std::to_string(allocation));
    start.fail_allocation = allocation;
    if (!EndAndRestart(run, end, start, nhupdate::kWantOfMemoryExitCode)) {
      return times;
    }
    ++times;
  }
  return 0;
}

int RestartTest::EndAndRestartInTheCopyOf(const DisturbedRun& run, const std::wstring& file,
                                          std::uint64_t size) const {
  const End end = RunUndisturbed(run);
  ProgramStart start = StartOfEnded(run);
  int times = 0;
  // On a busy machine a copy may be over before anybody has seen it.
  constexpr int kTries = 9;
  for (int attempt = 0; attempt < kTries && times < kMomentsOfACopy && !HasFailure(); ++attempt) {
    SCOPED_TRACE("ended in part " + std::to_string(times));
    const std::uint64_t enough = size / kMomentsOfACopy * static_cast<std::uint64_t>(times);
    // Not the file of before, which is a short one.
    start.end_when = [&] {
      const std::uint64_t reached = SizeOf(file);
      return reached > enough && reached < size;
    };
    times += EndAndRestart(run, end, start, kEndedByTest) ? 1 : 0;
  }
  return times;
}

}  // namespace nhupdate_test
