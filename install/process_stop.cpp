#include "install/process_stop.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "base/product_folders.h"
#include "base/strings.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "install/failure_notice.h"
#include "install/process_image.h"
#include "text/string_keys.h"

#include <psapi.h>  // needs <windows.h> first

namespace nhupdate {

namespace {

constexpr DWORD kTerminationWaitMs = 3000;
constexpr std::size_t kMaxProcesses = 1024;

// At most 1024 ids; none when Windows can't list them.
std::vector<DWORD> RunningProcesses() {
  std::array<DWORD, kMaxProcesses> ids = {};
  DWORD byte_count = 0;
  if (!::K32EnumProcesses(ids.data(), sizeof(ids), &byte_count)) {
    return {};
  }
  const std::size_t count = std::min(byte_count / sizeof(DWORD), ids.size());
  return std::vector<DWORD>(ids.data(), ids.data() + count);
}

// The name of the process's file, in its own letter case, when it is the one that is looked for.
std::optional<std::wstring> NameIfMatching(DWORD process_id, const std::wstring& file_name) {
  std::wstring name;
  std::wstring path;
  if (!GetProcessImageName(process_id, name, path) || !EqualsIgnoringCase(name, file_name)) {
    return std::nullopt;
  }
  return name;
}

void Terminate(DWORD process_id) {
  constexpr DWORD kIdleProcess = 0;
  if (process_id == kIdleProcess) {
    return;
  }
  const UniqueKernelHandle process(
      ::OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE, FALSE, process_id));
  if (!process.IsValid()) {
    return;  // what is still running shows in the check afterwards
  }
  ::TerminateProcess(process.Get(), 0);  // so does whether this worked
  ::WaitForSingleObject(process.Get(), kTerminationWaitMs);
}

}  // namespace

bool TerminateProcessByName(const std::wstring& file_name, const CLog& log) {
  const DWORD own_id = ::GetCurrentProcessId();

  bool is_found = false;
  for (const DWORD id : RunningProcesses()) {
    const std::optional<std::wstring> name = NameIfMatching(id, file_name);
    if (!name) {
      continue;
    }
    if (id == own_id) {
      log.Write(LogLevel::kInformation, L"Skip terminate current process %s(%d).", *name, id);
      continue;
    }
    is_found = true;
    log.Write(LogLevel::kInformation, L"Target process %s(%d) found, terminate it.", *name, id);
    Terminate(id);
  }
  if (!is_found) {
    log.Write(LogLevel::kInformation, L"Target process %s not found.", file_name);
  }

  bool all_ended = true;
  for (const DWORD id : RunningProcesses()) {
    const std::optional<std::wstring> name = NameIfMatching(id, file_name);
    if (name && id != own_id) {
      log.Write(LogLevel::kError, L"Process %s(%d) still found.", *name, id);
      all_ended = false;
    }
  }
  return all_ended;
}

bool StopUpdateManagers(const StringTable& strings, const CLog& log) {
  if (TerminateProcessByName(kProgramFileName, log)) {
    return true;
  }
  log.Write(LogLevel::kError, L"Fail to terminate NHUpdateManager.");
  TellFailure(strings, kKeyFailNeedStopNHUpdateManager);
  return false;
}

}  // namespace nhupdate
