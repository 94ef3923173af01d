#include "tests/end_to_end/support/other_copy.h"

#include <gtest/gtest.h>

#include "tests/end_to_end/support/installed_hub.h"

namespace nhupdate_test {

namespace {

constexpr DWORD kTimeLimitMs = 20'000;

// A name that was never used before. A process id would not do: what an earlier test has left
// running may still hold events that have the id of this process in their names.
std::wstring UnusedEventName() {
  static int count = 0;
  FILETIME now = {};
  ::GetSystemTimePreciseAsFileTime(&now);
  const ULONGLONG time = (ULONGLONG{now.dwHighDateTime} << 32) | now.dwLowDateTime;
  return L"nhupdate-" + std::to_wstring(time) + L"-" + std::to_wstring(++count);
}

nhupdate::UniqueKernelHandle CreateNewEvent(const std::wstring& name) {
  nhupdate::UniqueKernelHandle event(::CreateEventW(nullptr, TRUE, FALSE, name.c_str()));
  EXPECT_NE(::GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
  return event;
}

}  // namespace

COtherCopy::COtherCopy(const std::wstring& executable, Ending ending) {
  CInstalledHub::PutStandIn(L"stubborn", executable);
  const std::wstring events = UnusedEventName();
  ready_ = CreateNewEvent(events + L".ready");
  end_ = CreateNewEvent(events + L".end");

  std::wstring command_line =
      L"\"" + executable + L"\" " + events + (ending == Ending::kAllowed ? L" yielding" : L"");
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION information = {};
  EXPECT_TRUE(::CreateProcessW(executable.c_str(), command_line.data(), nullptr, nullptr, FALSE, 0,
                               nullptr, nullptr, &startup, &information));
  ::CloseHandle(information.hThread);
  process_.Reset(information.hProcess);
  id_ = information.dwProcessId;
  EXPECT_EQ(::WaitForSingleObject(ready_.Get(), kTimeLimitMs), WAIT_OBJECT_0);
}

COtherCopy::~COtherCopy() {
  ::SetEvent(end_.Get());
  EXPECT_EQ(::WaitForSingleObject(process_.Get(), kTimeLimitMs), WAIT_OBJECT_0);
}

bool COtherCopy::IsRunning() const {
  return ::WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT;
}

}  // namespace nhupdate_test
