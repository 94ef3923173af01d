#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <tuple>
#include <vector>

#include "app/manager_center.h"
#include "base/paths.h"
#include "base/program_file_name.h"
#include "base/strings.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "text/string_keys.h"

#include <psapi.h>  // needs <windows.h> first

namespace nhupdate {

namespace {

constexpr DWORD kTerminationWaitMs = 3000;
constexpr DWORD kImagePathUnits = 260;

// At most 1024 ids; none when Windows can't list them.
std::vector<DWORD> RunningProcesses() {
  std::array<DWORD, 1024> ids = {};
  DWORD byte_count = 0;
  if (!::K32EnumProcesses(ids.data(), sizeof(ids), &byte_count)) {
    return {};
  }
  const std::size_t count = std::min(byte_count / sizeof(DWORD), ids.size());
  return std::vector<DWORD>(ids.data(), ids.data() + count);
}

void Terminate(DWORD process_id) {
  // Id 0 is the idle process.
  if (process_id == 0) {
    return;
  }
  const UniqueKernelHandle process(
      ::OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE, FALSE, process_id));
  if (!process.IsValid()) {
    return;  // what is still running shows in the check afterwards
  }
  // Whether it worked shows in the check afterwards.
  std::ignore = ::TerminateProcess(process.Get(), 0);
  std::ignore = ::WaitForSingleObject(process.Get(), kTerminationWaitMs);
}

}  // namespace

int CManagerCenter::GetProcessImageName(unsigned long process_id, std::wstring& name,
                                        std::wstring& path) {
  const UniqueKernelHandle process(
      ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process_id));
  if (!process.IsValid()) {
    return 0;
  }
  // One unit more than Windows may fill, which stays a terminator.
  std::array<wchar_t, kImagePathUnits + 1> path_buffer = {};
  DWORD units = kImagePathUnits;
  if (::QueryFullProcessImageNameW(process.Get(), 0, path_buffer.data(), &units)) {
    path = path_buffer.data();
    name = FileName(path);
    return 1;
  }

  // A process that is just starting or ending often gives its path to one of these.
  if (::K32GetModuleFileNameExW(process.Get(), nullptr, path_buffer.data(), kImagePathUnits) == 0) {
    // A path that can't be had stays empty.
    std::ignore = ::K32GetProcessImageFileNameW(process.Get(), path_buffer.data(), kImagePathUnits);
  }
  path = path_buffer.data();
  std::array<wchar_t, kImagePathUnits + 1> name_buffer = {};
  const DWORD name_length =
      ::K32GetModuleBaseNameW(process.Get(), nullptr, name_buffer.data(), kImagePathUnits);
  name = name_length != 0 ? name_buffer.data() : FileName(path);
  return 1;
}

int CManagerCenter::TerminateProcessByName(const std::wstring& file_name) {
  const DWORD own_id = ::GetCurrentProcessId();
  std::wstring name;
  std::wstring path;

  bool is_found = false;
  for (const DWORD id : RunningProcesses()) {
    if (GetProcessImageName(id, name, path) == 0 || !EqualsIgnoringCase(name, file_name)) {
      continue;
    }
    if (id == own_id) {
      Log(LogLevel::kInformation, L"Skip terminate current process %s(%d).", name, id);
      continue;
    }
    is_found = true;
    Log(LogLevel::kInformation, L"Target process %s(%d) found, terminate it.", name, id);
    Terminate(id);
  }
  if (!is_found) {
    Log(LogLevel::kInformation, L"Target process %s not found.", file_name);
  }

  int result = 1;
  for (const DWORD id : RunningProcesses()) {
    if (GetProcessImageName(id, name, path) != 0 && EqualsIgnoringCase(name, file_name) &&
        id != own_id) {
      Log(LogLevel::kError, L"Process %s(%d) still found.", name, id);
      result = 0;
    }
  }
  return result;
}

int CManagerCenter::StopUpdateManagers() {
  if (TerminateProcessByName(kProgramFileName) == 1) {
    return 1;
  }
  Log(LogLevel::kError, L"Fail to terminate NHUpdateManager.");
  ShowErrorBox(GetString(kKeyFailNeedStopNHUpdateManager));
  return 0;
}

}  // namespace nhupdate
