#include <gtest/gtest.h>

#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {
namespace {

const Lines kFunctionLine = {L"2|Function : Check and background download"};
const Lines kSkipLine = {L"2|Skip background download due to no update or error."};

Lines Matching(const std::wstring& version) {
  return {L"2|Version match between installed and app folder : " + version};
}

Lines Differing(const std::wstring& installed, const std::wstring& staged) {
  return {L"2|Version mismatch between installed (" + installed + L") and app folder (" + staged +
          L")."};
}

Lines Download() {
  return Join({{L"2|Begin background download."},
               BackgroundDownloadLines(),
               {L"2|Launch updater success for baclground download."}});
}

class CheckAndDownloadTest : public WorkflowTest {
 protected:
  CheckAndDownloadTest() { AddUpdater(); }

  void SetVersions(const std::string& installed, const std::string& staged) {
    WriteFileBytes(product_.Base() + L"\\Version.txt", VersionFile(installed));
    WriteFileBytes(product_.App() + L"\\Version.txt", VersionFile(staged));
  }

  static std::string VersionFile(const std::string& version) {
    return "[ProductVersion]\r\nVersion=" + version + "\r\n";
  }
};

TEST_F(CheckAndDownloadTest, DownloadsWhatTheCheckFoundWithoutReadingVersions) {
  SetVersions("1.0.0", "1.0.0");
  ScriptedShell shell({EndsWith(0), EndsWith(0)});
  Interposer<decltype(::GetPrivateProfileStringW)> read(
      "GetPrivateProfileStringW",
      [&](const wchar_t* section, const wchar_t* key, const wchar_t* missing, wchar_t* value,
          DWORD units, const wchar_t* file) {
        return read.Original()(section, key, missing, value, units, file);
      });

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, 12);
  EXPECT_EQ(read.Calls(), 0);
  EXPECT_EQ(product_.Transcript(), Join({kFunctionLine,
                                         CheckForUpdateLines(),
                                         {L"2|Launch updater success for check.",
                                          L"2|Updater exit = 0", L"2|New update available."},
                                         Download()}));
}

TEST_F(CheckAndDownloadTest, EndsAtOnceWithoutAnUpdater) {
  SetVersions("1.0.0", "2.0.0");
  ::DeleteFileW((product_.Base() + L"\\Updater\\Updater.exe").c_str());
  ScriptedShell shell({});
  Interposer<decltype(::GetPrivateProfileStringW)> read(
      "GetPrivateProfileStringW",
      [&](const wchar_t* section, const wchar_t* key, const wchar_t* missing, wchar_t* value,
          DWORD units, const wchar_t* file) {
        return read.Original()(section, key, missing, value, units, file);
      });

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, 14);
  EXPECT_EQ(read.Calls(), 0);
  EXPECT_EQ(product_.Transcript(),
            Join({kFunctionLine,
                  CheckForUpdateLines(),
                  {L"4|Update.exe not found : {root}\\Nimba Hub\\Updater\\Updater.exe"}}));
}

// What a check says that found nothing, and the result when the versions match.
struct CheckCase {
  const char* name;
  ShellAnswer answer;
  Lines lines;
  int result;
};

void PrintTo(const CheckCase& test_case, std::ostream* stream) {
  *stream << test_case.name;
}

const CheckCase kCheckCases[] = {
    {"NoUpdate",
     EndsWith(1),
     {L"2|Launch updater success for check.", L"2|Updater exit = 1", L"2|No update available."},
     11},
    {"Error2",
     EndsWith(2),
     {L"2|Launch updater success for check.", L"2|Updater exit = 2", L"4|Updater error."},
     13},
    {"ErrorMinus1",
     EndsWith(0xFFFFFFFF),
     {L"2|Launch updater success for check.", L"2|Updater exit = -1", L"4|Updater error."},
     13},
    {"SmallestCode",
     EndsWith(0x80000000),
     {L"2|Launch updater success for check.", L"2|Updater exit = -2147483648", L"4|Updater error."},
     13},
    {"StillActive",
     EndsWith(259),
     {L"2|Launch updater success for check.", L"2|Updater exit = 259", L"4|Updater error."},
     13},
    {"Unreadable", EndsUnreadably(), {L"2|Launch updater success for check."}, 13},
    {"NoProcess", HandedOver(), {L"2|Launch updater success for check."}, 13},
    {"NotLaunched",
     FailsWith(ERROR_CANCELLED),
     {L"4|Fail to launch updater for download : 1223"},
     13},
};

class CheckWithoutFindTest : public CheckAndDownloadTest,
                             public testing::WithParamInterface<CheckCase> {};

TEST_P(CheckWithoutFindTest, DownloadsNothingWhenTheVersionsMatch) {
  SetVersions("1.10.2", "1.10.2");
  ScriptedShell shell({GetParam().answer});

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, GetParam().result);
  EXPECT_EQ(product_.Transcript(), Join({kFunctionLine, CheckForUpdateLines(), GetParam().lines,
                                         Matching(L"1.10.2"), kSkipLine}));
}

TEST_P(CheckWithoutFindTest, TakesTwoMissingVersionsForAMatch) {
  ScriptedShell shell({GetParam().answer});

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, GetParam().result);
  EXPECT_EQ(product_.Transcript(), Join({kFunctionLine, CheckForUpdateLines(), GetParam().lines,
                                         Matching(L""), kSkipLine}));
}

TEST_P(CheckWithoutFindTest, DownloadsWhenTheStagedVersionDiffers) {
  struct Case {
    const char* installed;
    const char* staged;
    const wchar_t* installed_text;
    const wchar_t* staged_text;
  };
  const Case cases[] = {
      {"1.0.0", "2.0.0", L"1.0.0", L"2.0.0"},
      {"1.1", "1.10", L"1.1", L"1.10"},
      {"1.0", "1.0.0", L"1.0", L"1.0.0"},
      {"1.0b", "1.0B", L"1.0b", L"1.0B"},
      {"", "1.0", L"", L"1.0"},
      {"2.0", "", L"2.0", L""},
  };
  for (const Case& versions : cases) {
    SetVersions(versions.installed, versions.staged);
    product_.ForgetRecords();
    ScriptedShell shell({GetParam().answer, EndsWith(0)});

    const int result = Manager().CheckAndDownload();

    EXPECT_EQ(result, 12);
    EXPECT_EQ(product_.Transcript(),
              Join({kFunctionLine, CheckForUpdateLines(), GetParam().lines,
                    Differing(versions.installed_text, versions.staged_text), Download()}));
  }
}

INSTANTIATE_TEST_SUITE_P(AllChecks, CheckWithoutFindTest, testing::ValuesIn(kCheckCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(CheckAndDownloadTest, KeepsItsResultWhenTheDownloadCannotBeLaunched) {
  ScriptedShell shell({EndsWith(0), FailsWith(ERROR_ACCESS_DENIED)});

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, 12);
  EXPECT_EQ(product_.Transcript().back(), L"4|Fail to launch updater for download : 5");
}

TEST_F(CheckAndDownloadTest, KeepsItsResultWhenTheUpdaterIsGoneBeforeTheDownload) {
  ScriptedShell shell({EndsWith(0)});
  Interposer<decltype(::WaitForSingleObject)> wait(
      "WaitForSingleObject", [&](HANDLE handle, DWORD milliseconds) {
        ::DeleteFileW((product_.Base() + L"\\Updater\\Updater.exe").c_str());
        return wait.Original()(handle, milliseconds);
      });

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, 12);
  EXPECT_EQ(product_.Transcript().back(),
            L"4|Update.exe not found : {root}\\Nimba Hub\\Updater\\Updater.exe");
}

TEST_F(CheckAndDownloadTest, ShowsNoBoxWhateverFails) {
  ScriptedShell shell({EndsWith(2)});

  std::ignore = Manager().CheckAndDownload();

  EXPECT_TRUE(boxes_.Shown().empty());
}

class DownloadWithoutElevationTest : public WorkflowTest {
 protected:
  DownloadWithoutElevationTest() : WorkflowTest({.elevated = false}) { AddUpdater(); }
};

TEST_F(DownloadWithoutElevationTest, ChecksAndDownloadsAllTheSame) {
  ScriptedShell shell({EndsWith(0), EndsWith(0)});

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, 12);
}

}  // namespace
}  // namespace nhupdate_test
