#include "tests/support/version_file.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

const struct {
  const char* name;
  ShellAnswer answer;
} kFruitlessChecks[] = {
    {"NoUpdate", EndsWith(1)},
    {"Error2", EndsWith(2)},
    {"ErrorMinus1", EndsWith(0xFFFFFFFF)},
    {"SmallestCode", EndsWith(0x80000000)},
    {"StillActive", EndsWith(259)},
    {"Unreadable", EndsUnreadably()},
    {"NoProcess", HandedOver()},
    {"NotLaunched", FailsWith(ERROR_CANCELLED)},
};

class CheckAndDownloadTest : public WorkflowTest {
 protected:
  explicit CheckAndDownloadTest(const ProductOptions& options = {}) : WorkflowTest(options) {
    AddFile(kUpdater);
  }

  void SetVersions(const std::string& installed, const std::string& staged) {
    WriteFileBytes(product_.Base() + L"\\Version.txt", VersionFile(installed));
    WriteFileBytes(product_.App() + L"\\Version.txt", VersionFile(staged));
  }

  // Counts how often values of files in INI format are read.
  INTERPOSER(GetPrivateProfileStringW) read_{[this](const wchar_t* section, const wchar_t* key,
                                                    const wchar_t* missing, wchar_t* value,
                                                    DWORD units, const wchar_t* file) {
    return read_.Original()(section, key, missing, value, units, file);
  }};
};

TEST_F(CheckAndDownloadTest, DownloadsWhatTheCheckFoundWithoutReadingVersions) {
  SetVersions("1.0.0", "1.0.0");
  const ScriptedShell shell({EndsWith(0), EndsWith(0)});

  Tell(Manager().CheckAndDownload());

  EXPECT_EQ(read_.Calls(), 0);
  TellEvents(shell);
}

TEST_F(CheckAndDownloadTest, EndsAtOnceWithoutAnUpdater) {
  SetVersions("1.0.0", "2.0.0");
  Remove(kUpdater);
  const ScriptedShell shell({});

  Tell(Manager().CheckAndDownload());

  EXPECT_EQ(read_.Calls(), 0);
}

TEST_F(CheckAndDownloadTest, KeepsTheResultOfTheCheckWhateverBecomesOfTheDownload) {
  {
    const ScriptedShell shell({EndsWith(0), FailsWith(ERROR_ACCESS_DENIED)});
    Tell("NotLaunched", Manager().CheckAndDownload());
  }
  const ScriptedShell shell({EndsWith(0, [this] { Remove(kUpdater); })});
  Tell("UpdaterGone", Manager().CheckAndDownload());
}

TEST_F(CheckAndDownloadTest, DownloadsNothingWhenTheVersionsMatch) {
  for (const auto& [name, answer] : kFruitlessChecks) {
    const ScriptedShell shell({answer});
    Tell(name + std::string(", no versions"), Manager().CheckAndDownload());
  }
  EXPECT_EQ(read_.Calls(), 16);
  SetVersions("1.10.2", "1.10.2");
  for (const auto& [name, answer] : kFruitlessChecks) {
    const ScriptedShell shell({answer});
    Tell(name + std::string(", equal versions"), Manager().CheckAndDownload());
    EXPECT_EQ(shell.OpenProcesses(), 0u);
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
    const ScriptedShell shell({EndsWith(1), EndsWith(0)});
    Tell(std::string(installed) + " and " + staged, Manager().CheckAndDownload());
  }
  for (const auto& [name, answer] : kFruitlessChecks) {
    const ScriptedShell shell({answer, EndsWith(0)});
    EXPECT_EQ(Manager().CheckAndDownload(), 12) << name;
  }
  EXPECT_THAT(boxes_.Shown(), testing::IsEmpty());
}

class UnelevatedCheckTest : public CheckAndDownloadTest {
 protected:
  UnelevatedCheckTest() : CheckAndDownloadTest({.elevated = false}) {}
};

TEST_F(UnelevatedCheckTest, DownloadsAllTheSame) {
  const ScriptedShell shell({EndsWith(0), EndsWith(0)});

  Tell(Manager().CheckAndDownload());
}

}  // namespace
}  // namespace nhupdate_test
