#include "tests/support/scripted_processes.h"

#include <algorithm>
#include <utility>

namespace nhupdate_test {

ScriptedProcesses::ScriptedProcesses(std::vector<ScriptedProcess> processes)
    : processes_(std::move(processes)),
      enumerate_([this](DWORD* ids, DWORD byte_count, DWORD* bytes_needed) {
        return Enumerate(ids, byte_count, bytes_needed);
      }),
      open_([this](DWORD access, BOOL inherit, DWORD id) { return Open(access, inherit, id); }),
      image_name_([this](HANDLE handle, DWORD flags, wchar_t* path, DWORD* units) {
        return ImageName(handle, flags, path, units);
      }),
      terminate_([this](HANDLE handle, UINT exit_code) { return Terminate(handle, exit_code); }) {}

std::vector<DWORD> ScriptedProcesses::Running() const {
  std::vector<DWORD> ids;
  for (const ScriptedProcess& process : processes_) {
    ids.push_back(process.id);
  }
  return ids;
}

BOOL ScriptedProcesses::Enumerate(DWORD* ids, DWORD byte_count, DWORD* bytes_needed) {
  const std::size_t count = std::min(byte_count / sizeof(DWORD), processes_.size());
  for (std::size_t index = 0; index < count; ++index) {
    ids[index] = processes_[index].id;
  }
  *bytes_needed = static_cast<DWORD>(count * sizeof(DWORD));
  return TRUE;
}

HANDLE ScriptedProcesses::Open(DWORD, BOOL, DWORD id) {
  const bool is_running =
      std::any_of(processes_.begin(), processes_.end(),
                  [&](const ScriptedProcess& process) { return process.id == id; });
  if (!is_running) {
    ::SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  // Signalled, so that nobody waits for it.
  const HANDLE handle = ::CreateEventW(nullptr, TRUE, TRUE, nullptr);
  opened_[handle] = id;
  return handle;
}

BOOL ScriptedProcesses::ImageName(HANDLE handle, DWORD flags, wchar_t* path, DWORD* units) {
  for (const ScriptedProcess& process : processes_) {
    if (opened_.contains(handle) && opened_[handle] == process.id && process.path.size() < *units) {
      process.path.copy(path, process.path.size());
      path[process.path.size()] = L'\0';
      *units = static_cast<DWORD>(process.path.size());
      return TRUE;
    }
  }
  return image_name_.Original()(handle, flags, path, units);
}

BOOL ScriptedProcesses::Terminate(HANDLE handle, UINT) {
  const auto ended =
      std::find_if(processes_.begin(), processes_.end(), [&](const ScriptedProcess& process) {
        return opened_.contains(handle) && opened_[handle] == process.id && !process.refuses_to_end;
      });
  if (ended == processes_.end()) {
    ::SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
  }
  processes_.erase(ended);
  return TRUE;
}

}  // namespace nhupdate_test
