// The program's first steps, and the ways in which it ends before it does anything.

#include "app/program.h"

#include "base/want_of_memory.h"
#include "tests/support/captured_console.h"
#include "tests/support/windows_basics.h"

// These need <windows.h> first.
#include <objbase.h>
#include <shellapi.h>

namespace nhupdate_test {
namespace {

// A fake that writes its name down.
template <typename Result>
auto Noting(std::vector<std::string>& effects, const char* name, Result result) {
  return [&effects, name, result](const auto&...) {
    effects.push_back(name);
    return result;
  };
}

// Only runs that end before the manager starts, which would take the tests' folder for a product's.
class ProgramStartTest : public testing::Test {
 protected:
  std::wstring command_line_ = L"\"C:\\A\\NHUpdateManager.exe\"";
  BOOL can_set_up_ = TRUE;
  bool can_split_ = true;
  wchar_t** arguments_ = nullptr;
  std::vector<std::string> effects_;

  CapturedConsole console_;
  INTERPOSER(SetThreadErrorMode) error_mode_{Noting(effects_, "SetThreadErrorMode", TRUE)};
  INTERPOSER(SetDefaultDllDirectories) dll_directories_{[this](DWORD) {
    effects_.push_back("SetDefaultDllDirectories");
    return can_set_up_;
  }};
  INTERPOSER(GetCommandLineW) get_command_line_{[this] {
    effects_.push_back("GetCommandLineW");
    return command_line_.data();
  }};
  INTERPOSER(CommandLineToArgvW) split_{[this](const wchar_t* command_line, int* count) {
    effects_.push_back("CommandLineToArgvW");
    EXPECT_EQ(command_line, command_line_.data());
    arguments_ = can_split_ ? split_.Original()(command_line, count) : nullptr;
    return arguments_;
  }};
  INTERPOSER(LocalFree) free_{[this](HLOCAL memory) {
    if (memory == arguments_) {
      effects_.push_back("LocalFree");
    }
    return free_.Original()(memory);
  }};
  INTERPOSER(CoInitialize) begin_com_{Noting(effects_, "CoInitialize", S_OK)};
  INTERPOSER(CoUninitialize) end_com_{[this] { effects_.push_back("CoUninitialize"); }};
  INTERPOSER(CreateDirectoryW) create_folder_{Noting(effects_, "CreateDirectoryW", FALSE)};
  INTERPOSER(LoadLibraryW) load_library_{Noting(effects_, "LoadLibraryW", HMODULE{nullptr})};
};

using ProgramStartDeathTest = ProgramStartTest;

TEST_F(ProgramStartTest, LeavesNoTraceWithoutASwitch) {
  for (const wchar_t* command_line :
       {L"", L"NHUpdateManager.exe", L"NHUpdateManager.exe --update", L"NHUpdateManager.exe update",
        L"NHUpdateManager.exe -help /?", L"NHUpdateManager.exe \"-update -install\"",
        L"NHUpdateManager.exe -install:1",
        // The first argument is the program, whatever it says.
        L"-update", L"\"-install\" help"}) {
    command_line_ = command_line;
    effects_.clear();

    EXPECT_EQ(RunProgram(), 0) << PrintToString(command_line);

    // COM comes and goes with the manager; nothing is created, loaded or said.
    EXPECT_THAT(effects_,
                ElementsAre("SetThreadErrorMode", "SetDefaultDllDirectories", "GetCommandLineW",
                            "CommandLineToArgvW", "LocalFree", "CoInitialize", "CoUninitialize"))
        << PrintToString(command_line);
  }
  EXPECT_EQ(console_.Bytes(), "");
}

// Windows always gives at least the program's own path; nothing is read where it didn't.
TEST_F(ProgramStartTest, LeavesNoTraceWithoutAnyArgument) {
  const INTERPOSER(CommandLineToArgvW) split([&](const wchar_t* command_line, int* count) {
    wchar_t** const arguments = split.Original()(command_line, count);
    *count = 0;
    return arguments;
  });
  command_line_ += L" -download";

  EXPECT_EQ(RunProgram(), 0);

  EXPECT_THAT(effects_, Not(Contains("CreateDirectoryW")));
}

TEST_F(ProgramStartTest, EndsWith1WithoutItsOwnModuleForWhichItAsksFirst) {
  command_line_ += L" -download";
  // Last of all, since other replacements need it to find the import table.
  const INTERPOSER(GetModuleHandleW) module_handle([&](const wchar_t* name) {
    return name == nullptr ? nullptr : module_handle.Original()(name);
  });

  EXPECT_EQ(RunProgram(), 1);

  EXPECT_EQ(console_.Bytes(), "Fatal Error: GetModuleHandle failed\n");
  EXPECT_THAT(effects_, IsEmpty());
}

TEST_F(ProgramStartTest, EndsWith1WhenTheProcessCannotBeSetUp) {
  command_line_ += L" -download";
  can_set_up_ = FALSE;

  EXPECT_EQ(RunProgram(), 1);

  EXPECT_EQ(console_.Bytes(), "Fatal Error: MFC initialization failed\n");
  EXPECT_THAT(effects_, ElementsAre("SetThreadErrorMode", "SetDefaultDllDirectories"));
}

TEST_F(ProgramStartTest, EndsWith1WithoutAConsoleToo) {
  can_set_up_ = FALSE;
  const HANDLE previous = ::GetStdHandle(STD_OUTPUT_HANDLE);
  ::SetStdHandle(STD_OUTPUT_HANDLE, nullptr);

  const int result = RunProgram();

  ::SetStdHandle(STD_OUTPUT_HANDLE, previous);
  EXPECT_EQ(result, 1);
}

// It counts as want of memory. The run has a process of its own, since it ends that.
TEST_F(ProgramStartDeathTest, EndsTheProcessWhenTheCommandLineCannotBeSplit) {
  can_split_ = false;
  command_line_ += L" -update";

  EXPECT_EXIT(std::ignore = RunProgram(),
              testing::ExitedWithCode(static_cast<int>(kWantOfMemoryExitCode)), "");
}

}  // namespace
}  // namespace nhupdate_test
