#include "tests/support/scripted_processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "base/unique_handle.h"

namespace nhupdate_test {
namespace {

using nhupdate::UniqueKernelHandle;
using testing::ElementsAre;

TEST(ScriptedProcessesTest, ListsAndNamesTheGivenProcesses) {
  ScriptedProcesses processes({{4242, L"C:\\a.exe"}, {4246, L"C:\\b.exe"}});
  std::array<DWORD, 8> ids = {};
  DWORD bytes = 0;

  EXPECT_TRUE(::K32EnumProcesses(ids.data(), sizeof(ids), &bytes));
  const UniqueKernelHandle process(::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, ids[1]));
  std::array<wchar_t, 64> path = {};
  DWORD units = static_cast<DWORD>(path.size());
  EXPECT_TRUE(::QueryFullProcessImageNameW(process.Get(), 0, path.data(), &units));

  EXPECT_EQ(bytes, 2 * sizeof(DWORD));
  EXPECT_STREQ(path.data(), L"C:\\b.exe");
}

TEST(ScriptedProcessesTest, EndsAProcessUnlessItRefuses) {
  ScriptedProcesses processes(
      {{4242, L"C:\\a.exe"}, {.id = 4246, .path = L"C:\\b.exe", .refuses_to_end = true}});
  const UniqueKernelHandle first(::OpenProcess(PROCESS_TERMINATE, FALSE, 4242));
  const UniqueKernelHandle second(::OpenProcess(PROCESS_TERMINATE, FALSE, 4246));

  EXPECT_TRUE(::TerminateProcess(first.Get(), 0));
  EXPECT_FALSE(::TerminateProcess(second.Get(), 0));

  EXPECT_THAT(processes.Running(), ElementsAre(4246u));
}

TEST(ScriptedProcessesTest, OpensNoOtherProcess) {
  const ScriptedProcesses processes;

  const HANDLE process = ::OpenProcess(PROCESS_TERMINATE, FALSE, ::GetCurrentProcessId());

  EXPECT_EQ(process, nullptr);
}

}  // namespace
}  // namespace nhupdate_test
