#include "app/process_setup.h"

#include <gtest/gtest.h>

#include "base/windows.h"
#include "tests/support/interposer.h"

namespace nhupdate {
namespace {

using nhupdate_test::Interposer;

class ProcessSetupTest : public testing::Test {
 protected:
  BOOL succeeds_ = TRUE;

  Interposer<decltype(::SetErrorMode)> error_mode_{
      "SetErrorMode", [](UINT mode) -> UINT {
        // No SEM_NOGPFAULTERRORBOX: with it Windows would write no crash dumps.
        EXPECT_EQ(mode, static_cast<UINT>(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX));
        return 0;
      }};
  Interposer<decltype(::SetDefaultDllDirectories)> dll_directories_{
      "SetDefaultDllDirectories", [this](DWORD flags) -> BOOL {
        EXPECT_EQ(flags, static_cast<DWORD>(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS));
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return succeeds_;
      }};
};

TEST_F(ProcessSetupTest, TurnsOffErrorDialogsAndUnsafeDllFolders) {
  EXPECT_TRUE(SetUpProcess());

  EXPECT_EQ(error_mode_.Calls(), 1);
  EXPECT_EQ(dll_directories_.Calls(), 1);
}

TEST_F(ProcessSetupTest, FailsWhenWindowsRefuses) {
  succeeds_ = FALSE;

  EXPECT_FALSE(SetUpProcess());
}

}  // namespace
}  // namespace nhupdate
