#include <gtest/gtest-spi.h>

#include "tests/support/fake_process_table.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

std::wstring ImageNameOf(HANDLE process) {
  std::array<wchar_t, 64> path = {};
  DWORD units = static_cast<DWORD>(path.size());
  EXPECT_TRUE(::QueryFullProcessImageNameW(process, 0, path.data(), &units));
  return path.data();
}

TEST(FakeProcessTableTest, ListsAndNamesTheGivenProcesses) {
  const FakeProcessTable table({{4242, L"C:\\a.exe"}, {4246, L"C:\\b.exe"}});
  std::array<DWORD, 8> ids = {};
  DWORD bytes = 0;

  EXPECT_TRUE(::K32EnumProcesses(ids.data(), sizeof(ids), &bytes));
  const UniqueKernelHandle process(::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, ids[1]));

  EXPECT_EQ(bytes, 2 * sizeof(DWORD));
  EXPECT_EQ(ImageNameOf(process.Get()), L"C:\\b.exe");
  EXPECT_EQ(table.Enumerations(), 1);
}

TEST(FakeProcessTableTest, EndsAProcessUnlessItRefusesOrLivesOn) {
  const FakeProcessTable table(
      {{4242, L"C:\\a.exe"},
       {.id = 4246, .image_path = L"C:\\b.exe", .refuses_to_end = true},
       {.id = 4250, .image_path = L"C:\\c.exe", .ends_when_terminated = false}});
  const struct {
    DWORD id;
    BOOL is_success;
    DWORD waited;
  } cases[] = {
      {4242, TRUE, WAIT_OBJECT_0}, {4246, FALSE, WAIT_TIMEOUT}, {4250, TRUE, WAIT_TIMEOUT}};
  for (const auto& [id, is_success, waited] : cases) {
    const UniqueKernelHandle process(::OpenProcess(PROCESS_TERMINATE, FALSE, id));

    EXPECT_EQ(::TerminateProcess(process.Get(), 0), is_success) << id;

    EXPECT_EQ(::WaitForSingleObject(process.Get(), 1), waited) << id;
  }
  EXPECT_THAT(table.Running(), ElementsAre(4246u, 4250u));
}

TEST(FakeProcessTableTest, OpensNoProcessThatIsDeniedOrNotInIt) {
  const FakeProcessTable table(
      {{.id = 4246, .image_path = L"C:\\b.exe", .can_be_terminated = false},
       {.id = 4250, .image_path = L"C:\\c.exe", .can_be_read = false}});

  EXPECT_EQ(::OpenProcess(PROCESS_TERMINATE, FALSE, 4246), nullptr);
  EXPECT_EQ(::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, 4250), nullptr);
  EXPECT_EQ(::OpenProcess(PROCESS_TERMINATE, FALSE, ::GetCurrentProcessId()), nullptr);
}

TEST(FakeProcessTableTest, TellsThisProcessAnIdThatNoRealOneHas) {
  const DWORD real = ::GetCurrentProcessId();
  const FakeProcessTable table;

  EXPECT_EQ(::GetCurrentProcessId(), FakeProcessTable::kOwnId);
  EXPECT_NE(FakeProcessTable::kOwnId % 4, 0u);  // real ids are multiples of 4
  EXPECT_NE(real, FakeProcessTable::kOwnId);
}

TEST(FakeProcessTableTest, LeavesTheProcessesOfTheTableBehindItAlone) {
  const FakeProcessTable behind({{4242, L"C:\\behind.exe"}});
  const UniqueKernelHandle process(::OpenProcess(PROCESS_TERMINATE, FALSE, 4242));
  const FakeProcessTable front({{4242, L"C:\\front.exe"}});

  EXPECT_EQ(ImageNameOf(process.Get()), L"C:\\behind.exe");
  EXPECT_TRUE(::TerminateProcess(process.Get(), 0));

  EXPECT_THAT(behind.Running(), IsEmpty());
  EXPECT_THAT(front.Running(), ElementsAre(4242u));
}

HANDLE OpenToEnd(DWORD id) {
  return ::OpenProcess(PROCESS_TERMINATE, FALSE, id);
}

// Called by a pointer, since the compiler may otherwise read the real function's address too early.
HANDLE (*volatile open_to_end)(DWORD) = &OpenToEnd;

void LeaveOpen() {
  const FakeProcessTable table({{4242, L"C:\\a.exe"}});
  EXPECT_NE(open_to_end(4242), nullptr);
}

TEST(FakeProcessTableTest, FailsTheTestThatLeavesAProcessOpen) {
  EXPECT_NONFATAL_FAILURE(LeaveOpen(), "Process 4242 was not closed.");
}

}  // namespace
}  // namespace nhupdate_test
