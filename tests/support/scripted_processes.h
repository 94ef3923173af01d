#pragma once

// Takes the place of the machine's processes: only the given ones are running, until they are
// ended. Handles to them are real handles of the kernel.

#include <map>
#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/support/interposer.h"

#include <psapi.h>  // needs <windows.h> first

namespace nhupdate_test {

struct ScriptedProcess {
  DWORD id = 0;
  std::wstring path;
  bool refuses_to_end = false;
};

class ScriptedProcesses {
 public:
  explicit ScriptedProcesses(std::vector<ScriptedProcess> processes = {});
  ScriptedProcesses(const ScriptedProcesses&) = delete;
  ScriptedProcesses& operator=(const ScriptedProcesses&) = delete;

  // The ids of the processes that are still running.
  [[nodiscard]] std::vector<DWORD> Running() const;

  // How often the code under test asked for the list.
  [[nodiscard]] int Enumerations() const { return enumerate_.Calls(); }

 private:
  BOOL Enumerate(DWORD* ids, DWORD byte_count, DWORD* bytes_needed);
  HANDLE Open(DWORD access, BOOL inherit, DWORD id);
  BOOL ImageName(HANDLE handle, DWORD flags, wchar_t* path, DWORD* units);
  BOOL Terminate(HANDLE handle, UINT exit_code);

  std::vector<ScriptedProcess> processes_;
  std::map<HANDLE, DWORD> opened_;
  INTERPOSER(K32EnumProcesses) enumerate_;
  INTERPOSER(OpenProcess) open_;
  INTERPOSER(QueryFullProcessImageNameW) image_name_;
  INTERPOSER(TerminateProcess) terminate_;
};

}  // namespace nhupdate_test
