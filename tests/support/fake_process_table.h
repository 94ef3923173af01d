#pragma once

// Takes the place of the machine's processes: only the given ones are running, until they are
// ended. What is done with them is written down in order. The code under test is told kOwnId as its
// own process id, whether or not that is among them.

#include "tests/support/windows_basics.h"

#include <psapi.h>  // needs <windows.h> first

namespace nhupdate_test {

struct FakeProcess {
  DWORD id = 0;
  // What the four functions that name a process return; with an empty text the function fails.
  std::wstring image_path = {};
  std::wstring module_path = {};
  std::wstring device_path = {};
  std::wstring base_name = {};
  bool can_be_read = true;
  bool can_be_terminated = true;     // else it can't even be opened for that
  bool ends_when_terminated = true;  // else it lives on, though nothing failed
  bool refuses_to_end = false;       // ending it fails
};

class FakeProcessTable {
 public:
  // The same as ScriptedShell's: a test that uses both gets the same id from either.
  static constexpr DWORD kOwnId = 700001;

  explicit FakeProcessTable(std::vector<FakeProcess> processes = {});
  // A process that is still open is a test failure.
  ~FakeProcessTable();

  // Makes listing the processes fail from now on.
  void FailToEnumerate() { can_be_enumerated_ = false; }

  // Every call with its numbers, such as L"Enumerate 4096" (bytes), L"Open 0x410 0 7" (access,
  // inheritance, id), L"Terminate 7 0" (id, exit code), L"Wait 7 3000" (id, ms), L"Close 7".
  [[nodiscard]] const std::vector<std::wstring>& Calls() const { return calls_; }

  // The ids of the processes that are still running.
  [[nodiscard]] std::vector<DWORD> Running() const;

  // How often the code under test asked for the list.
  [[nodiscard]] int Enumerations() const { return enumerate_.Calls(); }

  // How many handles were given out and not closed again.
  [[nodiscard]] int OpenHandles() const { return static_cast<int>(opened_.size()); }

 private:
  struct Entry {
    FakeProcess process;
    bool is_running = true;
  };

  // Calls the fake with the entry that a handle of this table stands for; calls with other handles
  // are passed on.
  template <typename Fake>
  auto ForOwn(Fake fake) {
    return [this, fake](HANDLE handle, auto... rest) {
      const auto opened = opened_.find(handle);
      return opened == opened_.end() ? std::nullopt
                                     : std::optional(fake(entries_[opened->second], rest...));
    };
  }

  BOOL Enumerate(DWORD* ids, DWORD byte_count, DWORD* bytes_needed);
  HANDLE Open(DWORD access, BOOL inherit, DWORD id);

  std::vector<Entry> entries_;
  std::map<HANDLE, std::size_t> opened_;  // the value is an index into entries_
  std::vector<std::wstring> calls_;
  bool can_be_enumerated_ = true;

  INTERPOSER(GetCurrentProcessId) own_id_{[] { return kOwnId; }};
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
