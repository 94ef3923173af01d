#include "app/process_setup.h"

#include <new>

#include "base/want_of_memory.h"
#include "tests/support/windows_basics.h"

namespace nhupdate_test {
namespace {

TEST(ProcessSetupTest, TurnsOffErrorDialogsAndUnsafeDllFoldersUnlessWindowsRefusesTheLatter) {
  // No SEM_NOGPFAULTERRORBOX: with it Windows would write no crash dumps.
  constexpr DWORD kNoDialogs = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;
  const struct {
    DWORD former_mode;  // what the caller of the program has turned off
    BOOL can_restrict;
  } cases[] = {{0, TRUE}, {SEM_NOALIGNMENTFAULTEXCEPT, TRUE}, {0, FALSE}};
  for (const auto& c : cases) {
    DWORD mode = 0;
    DWORD dll_folders = 0;
    const INTERPOSER(GetThreadErrorMode) get_mode(Answers(c.former_mode));
    const INTERPOSER(SetThreadErrorMode) set_mode([&](DWORD new_mode, DWORD*) {
      mode = new_mode;
      return TRUE;
    });
    const INTERPOSER(SetDefaultDllDirectories) dll_directories([&](DWORD flags) {
      dll_folders = flags;
      return c.can_restrict;
    });

    EXPECT_EQ(SetUpProcess(), c.can_restrict != FALSE);

    EXPECT_EQ(mode, c.former_mode | kNoDialogs);
    EXPECT_EQ(dll_folders, static_cast<DWORD>(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS));
  }
}

TEST(ProcessSetupDeathTest, LetsWantOfMemoryEndTheProcess) {
  const volatile std::size_t more_than_there_is = PTRDIFF_MAX;

  EXPECT_EXIT(
      {
        std::ignore = SetUpProcess();
        ::operator delete(::operator new(more_than_there_is));
      },
      testing::ExitedWithCode(static_cast<int>(kWantOfMemoryExitCode)), "");
}

}  // namespace
}  // namespace nhupdate_test
