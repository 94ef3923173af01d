#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/support/installed_product.h"
#include "tests/support/interposer.h"
#include "tests/support/product_keys.h"
#include "tests/support/registry_recorder.h"
#include "tests/support/scratch_registry.h"

namespace nhupdate_test {
namespace {

using testing::ElementsAre;

void FakeDate(SYSTEMTIME* now, WORD year, WORD month, WORD day) {
  *now = {};
  now->wYear = year;
  now->wMonth = month;
  now->wDay = day;
}

class RegisterProductTest : public testing::Test {
 protected:
  RegisterProductTest() {
    product_.Start();
    product_.ForgetRecords();
  }

  std::vector<WrittenValue> ExpectedRows() const {
    const std::wstring manager = product_.Base() + L"\\NHUpdateManager";
    const std::wstring uninstaller = manager + L"\\NHUninstaller\\NHUninstaller.exe";
    const std::wstring log_folder =
        product_.ProgramData() + L"\\Corvane\\NimbaSoftware\\NimbaHub\\Log";
    return {
        Text(kProductKey, L"AppPath", product_.Root()),
        Text(kProductKey, L"UpdateManager", manager + L"\\NHUpdateManager.exe"),
        Text(kCollectLogKey, L"CorvaneNimbaHub",
             product_.Module() + L"\\NHCollectLog\\NHCollectLog.exe"),
        Text(kDumpKey, L"DumpFolder", log_folder),
        {kDumpKey, L"DumpCount", REG_DWORD, {2, 0, 0, 0}},
        {kDumpKey, L"DumpType", REG_DWORD, {2, 0, 0, 0}},
        Text(kUninstallKey, L"DisplayName", L"Nimba Hub"),
        Text(kUninstallKey, L"UninstallString", L"\"" + uninstaller + L"\" -uninstall"),
        Text(kUninstallKey, L"DisplayIcon", uninstaller),
        Text(kUninstallKey, L"Publisher", L"Corvane"),
        Text(kUninstallKey, L"InstallLocation", product_.Root()),
        Text(kUninstallKey, L"InstallDate", L"20270301"),
    };
  }

  InstalledProduct product_;
  ScratchRegistry registry_;
  INTERPOSER(GetLocalTime) local_time_{[](SYSTEMTIME* now) { FakeDate(now, 2027, 3, 1); }};
};

TEST_F(RegisterProductTest, WritesEveryValueInOrderWithItsTypeAndUnterminatedBytes) {
  const RegistryRecorder recorder;

  EXPECT_EQ(product_.Manager().RegisterProduct(), 1);

  EXPECT_EQ(recorder.Written(), ExpectedRows());
}

TEST_F(RegisterProductTest, OpensAndClosesTheKeyAnewForEachValue) {
  const RegistryRecorder recorder;

  EXPECT_EQ(product_.Manager().RegisterProduct(), 1);

  EXPECT_EQ(recorder.OpenedKeys(), 12);
  EXPECT_EQ(recorder.OpenKeys(), 0);
}

TEST_F(RegisterProductTest, LeavesTheValuesInTheRegistry) {
  EXPECT_EQ(product_.Manager().RegisterProduct(), 1);

  for (const WrittenValue& row : ExpectedRows()) {
    EXPECT_EQ(StoredValue(row.key, row.name), row);
  }
}

TEST_F(RegisterProductTest, TellsOfTwoOfItsSteps) {
  EXPECT_EQ(product_.Manager().RegisterProduct(), 1);

  EXPECT_THAT(product_.Transcript(), ElementsAre(L"2|Nimba Hub registry set.",
                                                 L"2|NHUpdateManager crash dump folder set to : "
                                                 L"{data}\\Corvane\\NimbaSoftware\\NimbaHub\\Log"));
}

TEST_F(RegisterProductTest, LogsAfterTheSecondAndTheSixthValue) {
  std::vector<std::size_t> records_before_value;
  const RegistryRecorder recorder(
      [&](int) { records_before_value.push_back(product_.Transcript().size()); });

  EXPECT_EQ(product_.Manager().RegisterProduct(), 1);

  EXPECT_THAT(records_before_value, ElementsAre(0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2));
}

TEST_F(RegisterProductTest, AsksForTheDateOnceRightBeforeItIsWritten) {
  std::vector<int> questions_before_value;
  const RegistryRecorder recorder(
      [&](int) { questions_before_value.push_back(local_time_.Calls()); });

  EXPECT_EQ(product_.Manager().RegisterProduct(), 1);

  EXPECT_THAT(questions_before_value, ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1));
}

TEST_F(RegisterProductTest, WritesTheSameAgainAndDeletesNothing) {
  EXPECT_EQ(product_.Manager().RegisterProduct(), 1);
  SetRegistryValue(HKEY_LOCAL_MACHINE, kUninstallKey, L"Comments",
                   {REG_SZ, BytesOf(L"of somebody else")});

  EXPECT_EQ(product_.Manager().RegisterProduct(), 1);

  for (const WrittenValue& row : ExpectedRows()) {
    EXPECT_EQ(StoredValue(row.key, row.name), row);
  }
  EXPECT_EQ(StoredValue(kUninstallKey, L"Comments"),
            Text(kUninstallKey, L"Comments", L"of somebody else"));
}

// The collect-log tool lies with the running program, the others with the installed product.
TEST_F(RegisterProductTest, TellsTheRunningProgramsFolderFromTheInstalledOne) {
  InstalledProduct elsewhere({.module = L"\\Other"});
  const std::wstring manager = elsewhere.Base() + L"\\NHUpdateManager";
  elsewhere.Start();
  const RegistryRecorder recorder;

  EXPECT_EQ(elsewhere.Manager().RegisterProduct(), 1);

  EXPECT_EQ(recorder.Written()[1],
            Text(kProductKey, L"UpdateManager", manager + L"\\NHUpdateManager.exe"));
  EXPECT_EQ(recorder.Written()[2],
            Text(kCollectLogKey, L"CorvaneNimbaHub",
                 elsewhere.Base() + L"\\Other\\NHCollectLog\\NHCollectLog.exe"));
  EXPECT_EQ(recorder.Written()[8],
            Text(kUninstallKey, L"DisplayIcon", manager + L"\\NHUninstaller\\NHUninstaller.exe"));
}

struct DateCase {
  WORD year;
  WORD month;
  WORD day;
  const wchar_t* text;
};

TEST(RegisterProductDateTest, IsWrittenAsEightDigits) {
  const DateCase kCases[] = {{2027, 3, 1, L"20270301"},
                             {2026, 12, 31, L"20261231"},
                             {2028, 2, 29, L"20280229"},
                             {2030, 10, 10, L"20301010"},
                             {1601, 1, 1, L"16010101"}};
  InstalledProduct product;
  product.Start();
  const ScratchRegistry registry;

  for (const DateCase& example : kCases) {
    const RegistryRecorder recorder;
    const INTERPOSER(GetLocalTime) local_time(
        [&](SYSTEMTIME* now) { FakeDate(now, example.year, example.month, example.day); });

    EXPECT_EQ(product.Manager().RegisterProduct(), 1);

    EXPECT_EQ(recorder.Written().back(), Text(kUninstallKey, L"InstallDate", example.text));
  }
}

}  // namespace
}  // namespace nhupdate_test
