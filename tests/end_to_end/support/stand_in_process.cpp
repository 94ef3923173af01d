#include "tests/end_to_end/support/stand_in_process.h"

#include <gtest/gtest.h>

#include "base/format.h"
#include "tests/support/files.h"

namespace nhupdate_test {

namespace {

constexpr DWORD kTimeLimitMs = 20'000;

std::wstring NextEventName() {
  static int count = 0;
  return nhupdate::Format(L"nhupdate-%d-%d", ::GetCurrentProcessId(), ++count);
}

}  // namespace

CStandInProcess::CStandInProcess(const std::wstring& executable, const std::wstring& arguments) {
  const std::wstring events = NextEventName();
  ready_.Reset(::CreateEventW(nullptr, TRUE, FALSE, (events + L".ready").c_str()));
  end_.Reset(::CreateEventW(nullptr, TRUE, FALSE, (events + L".end").c_str()));

  std::wstring command_line = L"\"" + executable + L"\" " + events + L" " + arguments;
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

CStandInProcess::~CStandInProcess() {
  ::SetEvent(end_.Get());
  ::WaitForSingleObject(process_.Get(), kTimeLimitMs);
}

bool CStandInProcess::IsRunning() const {
  return ::WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT;
}

CHeldFile::CHeldFile(const std::wstring& path, int sharing, int milliseconds)
    : CStandInProcess(TestProgramFolder() + L"\\file_holder.exe",
                      L"\"" + path + nhupdate::Format(L"\" %d %d", sharing, milliseconds)) {}

}  // namespace nhupdate_test
