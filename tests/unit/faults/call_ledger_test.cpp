#include "tests/unit/faults/call_ledger.h"

#include "tests/support/windows_basics.h"
#include "tests/unit/faults/faulty_windows.h"

namespace nhupdate_test {
namespace {

TEST(CallLedgerTest, FailsTheOneCallAndNoOther) {
  CallLedger ledger({.call = 1, .function = {}, .error = ERROR_DISK_FULL});
  const FaultyWindows windows(ledger);
  ledger.Begin();

  const DWORD first = ::GetFileAttributesW(L"C:\\");
  const DWORD second = ::GetFileAttributesW(L"C:\\");
  const DWORD error = ::GetLastError();
  const DWORD third = ::GetFileAttributesW(L"C:\\");
  ledger.End();

  EXPECT_NE(first, INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(second, INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(error, static_cast<DWORD>(ERROR_DISK_FULL));
  EXPECT_NE(third, INVALID_FILE_ATTRIBUTES);
  EXPECT_THAT(ledger.Calls(), ElementsAre(Call{"GetFileAttributesW", L"C:\\", 1},
                                          Call{"GetFileAttributesW", L"C:\\", 2},
                                          Call{"GetFileAttributesW", L"C:\\", 3}));
}

TEST(CallLedgerTest, FailsEveryCallOfAFunction) {
  CallLedger ledger({.call = {}, .function = "GetFileAttributesW", .error = ERROR_DISK_FULL});
  const FaultyWindows windows(ledger);
  ledger.Begin();

  EXPECT_EQ(::GetFileAttributesW(L"C:\\"), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(::GetFileAttributesW(L"C:\\windows"), INVALID_FILE_ATTRIBUTES);
  ledger.End();
}

TEST(CallLedgerTest, NamesWhatIsLeftOpen) {
  CallLedger ledger({});
  const FaultyWindows windows(ledger);
  WIN32_FIND_DATAW entry = {};
  ledger.Begin();

  const HANDLE search = ::FindFirstFileW(L"C:\\*", &entry);
  EXPECT_THAT(ledger.StillOpen(), ElementsAre(L"C:\\*"));
  ::FindClose(search);
  ledger.End();

  EXPECT_THAT(ledger.StillOpen(), IsEmpty());
}

TEST(CallLedgerTest, NoticesWhatIsClosedTwice) {
  CallLedger ledger({});
  const int resource = 0;
  ledger.Begin();

  ledger.Opened(ResourceKind::kHandle, &resource, L"thing");
  ledger.Closed(ResourceKind::kHandle, &resource);
  EXPECT_EQ(ledger.ClosedTwice(), 0);
  ledger.Closed(ResourceKind::kHandle, &resource);

  EXPECT_EQ(ledger.ClosedTwice(), 1);
}

TEST(CallLedgerTest, CountsNothingOutsideTheRun) {
  CallLedger ledger({});
  const FaultyWindows windows(ledger);

  ::GetFileAttributesW(L"C:\\");

  EXPECT_THAT(ledger.Calls(), IsEmpty());
}

}  // namespace
}  // namespace nhupdate_test
