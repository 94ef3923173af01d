#include "app/process_setup.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>

#include "base/want_of_memory.h"
#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate_test {
namespace {

using nhupdate::SetUpProcess;

using ProcessSetupDeathTest = testing::Test;

class ProcessSetupTest : public testing::Test {
 protected:
  BOOL succeeds_ = TRUE;

  DWORD former_mode_ = 0;
  DWORD mode_ = 0;

  INTERPOSER(GetThreadErrorMode) get_error_mode_{[this] { return former_mode_; }};
  INTERPOSER(SetThreadErrorMode) error_mode_{[this](DWORD mode, DWORD* former) -> BOOL {
    EXPECT_EQ(former, nullptr);
    mode_ = mode;
    return TRUE;
  }};
  INTERPOSER(SetDefaultDllDirectories) dll_directories_{[this](DWORD flags) -> BOOL {
    EXPECT_EQ(flags, static_cast<DWORD>(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS));
    ::SetLastError(ERROR_INVALID_PARAMETER);
    return succeeds_;
  }};
};

TEST_F(ProcessSetupTest, TurnsOffErrorDialogsAndUnsafeDllFolders) {
  EXPECT_TRUE(SetUpProcess());

  // No SEM_NOGPFAULTERRORBOX: with it Windows would write no crash dumps.
  EXPECT_EQ(mode_, static_cast<DWORD>(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX));
  EXPECT_EQ(error_mode_.Calls(), 1);
  EXPECT_EQ(dll_directories_.Calls(), 1);
}

TEST_F(ProcessSetupTest, KeepsWhatTheCallerOfTheProgramTurnedOff) {
  former_mode_ = SEM_NOALIGNMENTFAULTEXCEPT;

  EXPECT_TRUE(SetUpProcess());

  EXPECT_EQ(mode_, static_cast<DWORD>(SEM_NOALIGNMENTFAULTEXCEPT | SEM_FAILCRITICALERRORS |
                                      SEM_NOOPENFILEERRORBOX));
}

TEST_F(ProcessSetupTest, FailsWhenWindowsRefuses) {
  succeeds_ = FALSE;

  EXPECT_FALSE(SetUpProcess());
}

TEST_F(ProcessSetupDeathTest, LetsWantOfMemoryEndTheProcess) {
  const volatile std::size_t more_than_there_is = PTRDIFF_MAX;

  EXPECT_EXIT(
      {
        std::ignore = SetUpProcess();
        ::operator delete(::operator new(more_than_there_is));
      },
      testing::ExitedWithCode(static_cast<int>(nhupdate::kWantOfMemoryExitCode)), "");
}

}  // namespace
}  // namespace nhupdate_test
