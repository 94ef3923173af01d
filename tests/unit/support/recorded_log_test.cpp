#include "tests/support/recorded_log.h"

#include "tests/support/basics.h"
#include "tests/support/fake_process_table.h"

namespace nhupdate_test {
namespace {

TEST(RecordedLogTest, KeepsEveryRecordWithItsLevel) {
  RecordedLog log;

  log.Center().WriteRecord(2, L"tag", L"first");
  log.Center().WriteRecord(4, L"another tag", L"a|b\nc");
  log.Center().WriteRecord(3, L"", L"");

  EXPECT_THAT(log.Records(), ElementsAre(L"2|first", L"4|a|b\nc", L"3|"));
}

TEST(RecordedLogTest, NamesTheFolderAndTheProcess) {
  const FakeProcessTable table;
  RecordedLog log(L"C:\\Scratch");

  log.Center().WriteRecord(2, L"tag", L"C:\\Scratch\\a => C:\\Scratch\\b");
  log.Center().WriteRecord(2, L"tag", L"Skip terminate current process a.exe(700001).");

  EXPECT_THAT(log.Records(), ElementsAre(L"2|{root}\\a => {root}\\b",
                                         L"2|Skip terminate current process a.exe({pid})."));
}

TEST(RecordedLogTest, BeginsWithoutThoseBeforeIt) {
  {
    RecordedLog former;
    former.Center().WriteRecord(2, L"tag", L"former");
  }
  RecordedLog log;
  log.Center().WriteRecord(2, L"tag", L"first");

  log.ForgetRecords();
  log.Center().WriteRecord(2, L"tag", L"second");

  EXPECT_THAT(log.Records(), ElementsAre(L"2|second"));
}

}  // namespace
}  // namespace nhupdate_test
