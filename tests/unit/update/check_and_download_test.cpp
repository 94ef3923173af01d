#include "tests/support/version_file.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

// What each exit code means is tested in updater_run_test.cpp.
const struct {
  const char* name;
  ShellAnswer answer;
} kFruitlessChecks[] = {
    {"NoUpdate", EndsWith(1)},
    {"Error", EndsWith(2)},
    {"Unreadable", EndsUnreadably()},
    {"NotLaunched", FailsWith(ERROR_CANCELLED)},
};

class CheckAndDownloadTest : public WorkflowTest {
 protected:
  CheckAndDownloadTest() { AddFile(kUpdater); }

  int Run() override { return Manager().CheckAndDownload(); }

  void SetVersions(const std::string& installed, const std::string& staged) {
    WriteFileBytes(product_.Base() + L"\\Version.txt", VersionFile(installed));
    WriteFileBytes(product_.App() + L"\\Version.txt", VersionFile(staged));
  }

  // Counts how often values of files in INI format are read.
  INTERPOSER(GetPrivateProfileStringW) read_;
};

TEST_F(CheckAndDownloadTest, DownloadsWhatTheCheckFoundWithoutReadingVersions) {
  SetVersions("1.0.0", "1.0.0");

  TellRun("Found", {EndsWith(0), EndsWith(0)});
  TellRun("DownloadNotLaunched", {EndsWith(0), FailsWith(ERROR_ACCESS_DENIED)});
  TellRun("UpdaterGone", {EndsWith(0, [this] { Remove(kUpdater); })});

  EXPECT_EQ(read_.Calls(), 0);
}

TEST_F(CheckAndDownloadTest, EndsAtOnceWithoutAnUpdater) {
  SetVersions("1.0.0", "2.0.0");
  Remove(kUpdater);

  TellRun({});

  EXPECT_EQ(read_.Calls(), 0);
}

TEST_F(CheckAndDownloadTest, DownloadsNothingWhenTheVersionsMatch) {
  for (const auto& [name, answer] : kFruitlessChecks) {
    TellRun(name + std::string(", no versions"), {answer});
  }
  EXPECT_EQ(read_.Calls(), 8);
  SetVersions("1.10.2", "1.10.2");
  for (const auto& [name, answer] : kFruitlessChecks) {
    TellRun(name + std::string(", equal versions"), {answer});
  }
}

TEST_F(CheckAndDownloadTest, DownloadsWhenTheStagedVersionDiffers) {
  const struct {
    const char* installed;
    const char* staged;
  } versions[] = {{"1.0.0", "2.0.0"}, {"1.1", "1.10"}, {"1.0", "1.0.0"},
                  {"1.0b", "1.0B"},   {"", "1.0"},     {"2.0", ""}};
  for (const auto& [installed, staged] : versions) {
    SetVersions(installed, staged);
    TellRun(std::string(installed) + " and " + staged, {EndsWith(1), EndsWith(0)});
  }
  for (const auto& [name, answer] : kFruitlessChecks) {
    TellRun(name, {answer, EndsWith(0)});
  }
}

TEST_F(CheckAndDownloadTest, NeedsNoElevation) {
  LoseElevation();

  TellRun({EndsWith(0), EndsWith(0)});
}

}  // namespace
}  // namespace nhupdate_test
