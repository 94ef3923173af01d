#pragma once

// Shows the program processes that don't exist, and writes down in order what it does with them.

#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/support/interposer.h"

#include <psapi.h>  // needs <windows.h> first

namespace nhupdate_test {

struct FakeProcess {
  DWORD id = 0;
  // What each of the four questions is answered with; an empty text is a failure.
  std::wstring image_path;
  std::wstring module_path = {};
  std::wstring device_path = {};
  std::wstring base_name = {};
  bool can_be_read = true;
  bool can_be_terminated = true;
  bool ends_when_terminated = true;
};

class FakeProcessTable {
 public:
  explicit FakeProcessTable(std::vector<FakeProcess> processes);

  // Makes listing the processes fail from now on.
  void FailToEnumerate() { can_be_enumerated_ = false; }

  // What was called: L"Enumerate 4096", L"Open 0x410 0 7" (access, inheritance, id), L"Terminate 7
  // 0" (id, exit code), L"Wait 7 3000", L"Close 7".
  [[nodiscard]] const std::vector<std::wstring>& Calls() const { return calls_; }

  // The handles that were given out and not closed again.
  [[nodiscard]] int OpenHandles() const { return open_handles_; }

 private:
  struct Entry {
    FakeProcess process;
    bool is_running = true;
  };

  [[nodiscard]] Entry* ById(DWORD id);
  // Nothing when the handle is not one of this table.
  [[nodiscard]] Entry* ByHandle(HANDLE handle);

  BOOL Enumerate(DWORD* ids, DWORD byte_count, DWORD* bytes_needed);
  HANDLE Open(DWORD access, BOOL inherit, DWORD id);

  std::vector<Entry> entries_;
  std::vector<std::wstring> calls_;
  int open_handles_ = 0;
  bool can_be_enumerated_ = true;

  INTERPOSER(K32EnumProcesses) enumerate_;
  INTERPOSER(OpenProcess) open_;
  INTERPOSER(QueryFullProcessImageNameW) image_name_;
  INTERPOSER(K32GetModuleFileNameExW) module_file_name_;
  INTERPOSER(K32GetProcessImageFileNameW) device_file_name_;
  INTERPOSER(K32GetModuleBaseNameW) base_name_;
  INTERPOSER(TerminateProcess) terminate_;
  INTERPOSER(WaitForSingleObject) wait_;
  INTERPOSER(CloseHandle) close_;
};

}  // namespace nhupdate_test
