#include <gtest/gtest.h>

#include "tests/unit/update/check_and_download_test.h"

namespace nhupdate_test {
namespace {

const Lines kSkipLine = {L"2|Skip background download due to no update or error."};

Lines Matching(const std::wstring& version) {
  return {L"2|Version match between installed and app folder : " + version};
}

Lines Differing(const std::wstring& installed, const std::wstring& staged) {
  return {L"2|Version mismatch between installed (" + installed + L") and app folder (" + staged +
          L")."};
}

// Counts how often values of files in INI format are read.
class CountedReads {
 public:
  [[nodiscard]] int Count() const { return read_.Calls(); }

 private:
  INTERPOSER(GetPrivateProfileStringW) read_{[this](const wchar_t* section, const wchar_t* key,
                                                    const wchar_t* missing, wchar_t* value,
                                                    DWORD units, const wchar_t* file) {
    return read_.Original()(section, key, missing, value, units, file);
  }};
};

TEST_F(CheckAndDownloadTest, DownloadsWhatTheCheckFoundWithoutReadingVersions) {
  SetVersions("1.0.0", "1.0.0");
  ScriptedShell shell({EndsWith(0), EndsWith(0)});
  const CountedReads reads;

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, 12);
  EXPECT_EQ(reads.Count(), 0);
  EXPECT_EQ(product_.Transcript(), Join({FoundLines(), DownloadLines()}));
}

TEST_F(CheckAndDownloadTest, EndsAtOnceWithoutAnUpdater) {
  SetVersions("1.0.0", "2.0.0");
  RemoveUpdater();
  ScriptedShell shell({});
  const CountedReads reads;

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, 14);
  EXPECT_EQ(reads.Count(), 0);
  EXPECT_EQ(product_.Transcript(), CheckLines({kNoUpdaterLine}));
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
  EXPECT_EQ(product_.Transcript(),
            Join({CheckLines(GetParam().lines), Matching(L"1.10.2"), kSkipLine}));
}

TEST_P(CheckWithoutFindTest, TakesTwoMissingVersionsForAMatch) {
  ScriptedShell shell({GetParam().answer});
  const CountedReads reads;

  const int result = Manager().CheckAndDownload();

  EXPECT_EQ(result, GetParam().result);
  EXPECT_EQ(reads.Count(), 2);
  EXPECT_EQ(product_.Transcript(), Join({CheckLines(GetParam().lines), Matching(L""), kSkipLine}));
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
              Join({CheckLines(GetParam().lines),
                    Differing(versions.installed_text, versions.staged_text), DownloadLines()}));
  }
}

INSTANTIATE_TEST_SUITE_P(AllChecks, CheckWithoutFindTest, testing::ValuesIn(kCheckCases),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace nhupdate_test
