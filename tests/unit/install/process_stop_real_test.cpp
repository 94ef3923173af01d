// Stopping processes that exist: copies of the idle stand-in.

#include "install/process_stop.h"
#include "tests/support/child_process.h"
#include "tests/support/open_handles.h"
#include "tests/support/recorded_log.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

class IdleProcess {
 public:
  explicit IdleProcess(const std::wstring& executable) {
    EXPECT_TRUE(
        ::CopyFileW((TestProgramFolder() + L"\\idle.exe").c_str(), executable.c_str(), FALSE));
    process_ = StartChild(L"\"" + executable + L"\"");
  }

  ~IdleProcess() {
    ::TerminateProcess(process_.handle.Get(), 99);
    ::WaitForSingleObject(process_.handle.Get(), 5000);  // its file can't be deleted before
  }

  IdleProcess(const IdleProcess&) = delete;
  IdleProcess& operator=(const IdleProcess&) = delete;

  [[nodiscard]] std::wstring Id() const { return std::to_wstring(process_.id); }

  [[nodiscard]] DWORD ExitCode() const {
    DWORD exit_code = 0;
    EXPECT_TRUE(::GetExitCodeProcess(process_.handle.Get(), &exit_code));
    return exit_code;
  }

 private:
  ChildProcess process_;
};

class RealProcessTest : public testing::Test {
 protected:
  ScratchFolder scratch_;
  RecordedLog log_;
};

TEST_F(RealProcessTest, AreEndedWithExitCodeZeroWhereverTheyRunFrom) {
  CreateFolders(scratch_.Path() + L"\\one");
  CreateFolders(scratch_.Path() + L"\\two");
  const IdleProcess first(scratch_.Path() + L"\\one\\Nimba 100% ü.exe");
  const IdleProcess second(scratch_.Path() + L"\\two\\nimba 100% ü.EXE");

  EXPECT_TRUE(TerminateProcessByName(L"NIMBA 100% ü.exe", log_.Log()));

  EXPECT_EQ(first.ExitCode(), 0u);
  EXPECT_EQ(second.ExitCode(), 0u);
  EXPECT_THAT(log_.Records(),
              UnorderedElementsAre(
                  L"2|Target process Nimba 100% ü.exe(" + first.Id() + L") found, terminate it.",
                  L"2|Target process nimba 100% ü.EXE(" + second.Id() + L") found, terminate it."));
}

TEST_F(RealProcessTest, OfAnotherNameAreLeftRunning) {
  const IdleProcess other(scratch_.Path() + L"\\other.exe");

  EXPECT_TRUE(TerminateProcessByName(L"target.exe", log_.Log()));

  EXPECT_EQ(other.ExitCode(), static_cast<DWORD>(STILL_ACTIVE));
  EXPECT_THAT(log_.Records(), ElementsAre(L"2|Target process target.exe not found."));
}

TEST_F(RealProcessTest, DoNotIncludeTheCallingOneWhenItHasTheNameItself) {
  EXPECT_TRUE(TerminateProcessByName(L"INSTALL_TESTS.exe", log_.Log()));

  EXPECT_THAT(log_.Records(),
              ElementsAre(L"2|Skip terminate current process install_tests.exe({pid}).",
                          L"2|Target process INSTALL_TESTS.exe not found."));
}

TEST_F(RealProcessTest, LeaveNoHandlesBehind) {
  const IdleProcess target(scratch_.Path() + L"\\target.exe");
  const int handles_before = CountOpenHandles();

  EXPECT_TRUE(TerminateProcessByName(L"target.exe", log_.Log()));

  EXPECT_EQ(CountOpenHandles(), handles_before);
}

}  // namespace
}  // namespace nhupdate_test
