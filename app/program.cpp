#include "app/program.h"

#include <string>
#include <tuple>
#include <vector>

#include "app/manager_center.h"
#include "app/process_setup.h"
#include "app/run_mode.h"
#include "base/console.h"
#include "base/unique_handle.h"
#include "base/want_of_memory.h"
#include "base/windows.h"
#include "update/result_code.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate {

namespace {

// For DeleteUpdaterConfig: which copy of the program is running.
constexpr int kInstalledCopy = 0;
constexpr int kStagedCopy = 1;

struct ArgumentArrayTraits {
  using Value = wchar_t**;
  static Value None() { return nullptr; }
  static void Close(Value arguments) {
    ::LocalFree(arguments);  // there is nothing left to be done about it
  }
};

// The arguments of the process without its own path.
std::vector<std::wstring> CommandLineArguments() {
  int count = 0;
  const UniqueHandle<ArgumentArrayTraits> arguments(
      ::CommandLineToArgvW(::GetCommandLineW(), &count));
  if (!arguments.IsValid()) {
    // That is want of memory. To go on without a mode would say that all went well.
    EndProcessForWantOfMemory();
  }
  if (count < 1) {
    return {};
  }
  return std::vector<std::wstring>(arguments.Get() + 1, arguments.Get() + count);
}

int CleanUpAfterFailure(CManagerCenter& manager, int result, int running_copy) {
  if (result != kSucceeded) {
    std::ignore = manager.DeleteUpdaterConfig(running_copy);  // the first failure counts
  }
  return result;
}

int RunWorkflow(CManagerCenter& manager, RunMode mode) {
  switch (mode) {
    case RunMode::kDownload:
      return manager.CheckAndDownload();
    case RunMode::kInstall:
      return manager.InstallSequence(InstallKind::kInstallation);
    case RunMode::kUpdate:
      return CleanUpAfterFailure(manager, manager.Update(), kInstalledCopy);
    case RunMode::kSelfUpdate:
      return CleanUpAfterFailure(manager, manager.SelfUpdate(), kStagedCopy);
    case RunMode::kFinalUpdate:
      return CleanUpAfterFailure(manager, manager.FinalUpdate(), kInstalledCopy);
    case RunMode::kNone:
      break;
  }
  return kSucceeded;
}

}  // namespace

int RunProgram() {
  if (::GetModuleHandleW(nullptr) == nullptr) {
    PrintConsoleError(L"Fatal Error: GetModuleHandle failed\n");
    return kStartFailed;
  }
  if (!SetUpProcess()) {
    // The text stays: who reads the console of the program may look for it.
    PrintConsoleError(L"Fatal Error: MFC initialization failed\n");
    return kStartFailed;
  }

  const RunMode mode = ChooseRunMode(CommandLineArguments());
  CManagerCenter manager;
  if (mode == RunMode::kNone) {
    return kSucceeded;
  }
  std::ignore = manager.Initialize();  // a workflow runs with whatever could be set up

  const int result = RunWorkflow(manager, mode);
  manager.Log(LogLevel::kInformation, L"Return %d", result);
  manager.EndLog();
  return result;
}

}  // namespace nhupdate
