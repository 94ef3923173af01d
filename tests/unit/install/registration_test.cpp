#include "install/registration.h"

#include "tests/support/product_keys.h"
#include "tests/support/registry_recorder.h"
#include "tests/support/scratch_registry.h"
#include "tests/unit/install/install_test.h"

namespace nhupdate_test {
namespace {

SYSTEMTIME DateOf(WORD year, WORD month, WORD day) {
  return {year, month, 0, day, 0, 0, 0, 0};
}

class RegistrationTest : public InstallTest {
 protected:
  RegistrationTest() { folders_.log_folder = root_ + L"\\Log"; }

  bool Register() { return RegisterProduct(folders_, log_.Log()); }

  [[nodiscard]] std::vector<WrittenValue> ExpectedRows() const {
    const std::wstring manager = base_ + L"\\NHUpdateManager";
    const std::wstring uninstaller = manager + L"\\NHUninstaller\\NHUninstaller.exe";
    return {
        Text(kProductKey, L"AppPath", root_),
        Text(kProductKey, L"UpdateManager", manager + L"\\NHUpdateManager.exe"),
        Text(kCollectLogKey, L"CorvaneNimbaHub",
             folders_.module_folder + L"\\NHCollectLog\\NHCollectLog.exe"),
        Text(kDumpKey, L"DumpFolder", folders_.log_folder),
        {kDumpKey, L"DumpCount", REG_DWORD, {2, 0, 0, 0}},
        {kDumpKey, L"DumpType", REG_DWORD, {2, 0, 0, 0}},
        Text(kUninstallKey, L"DisplayName", L"Nimba Hub"),
        Text(kUninstallKey, L"UninstallString", L"\"" + uninstaller + L"\" -uninstall"),
        Text(kUninstallKey, L"DisplayIcon", uninstaller),
        Text(kUninstallKey, L"Publisher", L"Corvane"),
        Text(kUninstallKey, L"InstallLocation", root_),
        Text(kUninstallKey, L"InstallDate", L"20270301"),
    };
  }

  SYSTEMTIME now_ = DateOf(2027, 3, 1);
  ScratchRegistry registry_;
  INTERPOSER(GetLocalTime) local_time_{[this](SYSTEMTIME* now) { *now = now_; }};
};

TEST_F(RegistrationTest, WritesEveryValueInOrderWithItsTypeAndUnterminatedBytes) {
  const RegistryRecorder recorder;

  EXPECT_TRUE(Register());

  EXPECT_EQ(recorder.Written(), ExpectedRows());
  EXPECT_EQ(recorder.OpenedKeys(), 12);  // anew for each value
  EXPECT_EQ(recorder.OpenKeys(), 0);
}

TEST_F(RegistrationTest, LeavesTheValuesInTheRegistryAndDeletesNone) {
  EXPECT_TRUE(Register());
  SetRegistryValue(HKEY_LOCAL_MACHINE, kUninstallKey, L"Comments",
                   {REG_SZ, BytesOf(L"of somebody else")});
  EXPECT_TRUE(Register());

  for (const WrittenValue& row : ExpectedRows()) {
    EXPECT_EQ(StoredValue(row.key, row.name), row);
  }
  EXPECT_EQ(StoredValue(kUninstallKey, L"Comments"),
            Text(kUninstallKey, L"Comments", L"of somebody else"));
}

TEST_F(RegistrationTest, LogsAfterTheSecondAndTheSixthValueAndAsksForTheDateBeforeTheLast) {
  std::vector<std::size_t> records_before_value;
  std::vector<int> questions_before_value;
  const RegistryRecorder recorder([&](int) {
    records_before_value.push_back(log_.Records().size());
    questions_before_value.push_back(local_time_.Calls());
  });

  EXPECT_TRUE(Register());

  EXPECT_THAT(records_before_value, ElementsAre(0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2));
  EXPECT_THAT(questions_before_value, ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1));
  EXPECT_THAT(log_.Records(),
              ElementsAre(L"2|Nimba Hub registry set.",
                          L"2|NHUpdateManager crash dump folder set to : {root}\\Log"));
}

// The collect-log tool lies with the running program, the others with the installed product.
TEST_F(RegistrationTest, TellsTheRunningProgramsFolderFromTheInstalledOne) {
  folders_.module_folder = base_ + L"\\Other";
  const RegistryRecorder recorder;

  EXPECT_TRUE(Register());

  EXPECT_EQ(recorder.Written(), ExpectedRows());
}

TEST_F(RegistrationTest, WritesTheDateAsEightDigits) {
  const std::pair<SYSTEMTIME, const wchar_t*> cases[] = {
      {DateOf(2026, 12, 31), L"20261231"},
      {DateOf(2028, 2, 29), L"20280229"},
      {DateOf(2030, 10, 10), L"20301010"},
      {DateOf(1601, 1, 1), L"16010101"},
  };

  for (const auto& [date, text] : cases) {
    now_ = date;
    const RegistryRecorder recorder;

    EXPECT_TRUE(Register());

    EXPECT_EQ(recorder.Written().back(), Text(kUninstallKey, L"InstallDate", text));
  }
}

TEST_F(RegistrationTest, SaysTheSameWhenNoKeyCanBeOpened) {
  EXPECT_TRUE(Register());
  const Lines records = log_.Records();
  log_.ForgetRecords();
  INTERPOSER(RegCreateKeyExW) create(Answers(LSTATUS{ERROR_ACCESS_DENIED}));

  EXPECT_TRUE(Register());

  EXPECT_EQ(create.Calls(), 12);
  EXPECT_EQ(log_.Records(), records);
}

TEST_F(RegistrationTest, WritesTheRestWhenOneValueCannotBeWritten) {
  for (int failing = 1; failing <= 12; ++failing) {
    RegistryRecorder recorder;
    recorder.FailAtValue(failing);

    EXPECT_TRUE(Register());

    std::vector<WrittenValue> expected = ExpectedRows();
    expected.erase(expected.begin() + failing - 1);
    EXPECT_EQ(recorder.Written(), expected) << failing;
    EXPECT_EQ(recorder.OpenKeys(), 0) << failing;
  }
}

TEST_F(RegistrationTest, WritesAnUnknownLogFolderAsNoBytes) {
  folders_.log_folder.clear();
  const RegistryRecorder recorder;

  EXPECT_TRUE(Register());

  EXPECT_EQ(recorder.Written(), ExpectedRows());
  EXPECT_EQ(recorder.Written()[3].bytes.size(), 0u);
  EXPECT_EQ(log_.Records().back(), L"2|NHUpdateManager crash dump folder set to : ");
}

}  // namespace
}  // namespace nhupdate_test
