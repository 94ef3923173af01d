#pragma once

// This program as its own child: what can only be asked of another process, or changes the process
// that asks.

#include <optional>
#include <string>

#include "base/unique_handle.h"

namespace nhupdate_test {

// The path of this program.
[[nodiscard]] std::wstring OwnPath();

// Starts the program, which is this one or a copy of it, with a task:
//
//   sleep            lives for a minute, unless it is ended
//   exit N           ends with N
//   error-mode       ends with the error mode of the process
//   load NAME        ends with the error of loading that library
//   load-safely NAME the same with the default folders for libraries only
//
// In the folder, when there is one; otherwise in that of this process.
[[nodiscard]] nhupdate::UniqueKernelHandle StartChild(const std::wstring& program,
                                                      const std::wstring& task,
                                                      const std::wstring& folder = {});

// Waits, and returns the exit code.
[[nodiscard]] DWORD ExitCodeOf(const nhupdate::UniqueKernelHandle& process);

// Ended when the object goes.
class CSleepingChild {
 public:
  explicit CSleepingChild(const std::wstring& program = OwnPath());
  ~CSleepingChild();
  CSleepingChild(const CSleepingChild&) = delete;
  CSleepingChild& operator=(const CSleepingChild&) = delete;

  [[nodiscard]] const nhupdate::UniqueKernelHandle& Process() const { return process_; }
  [[nodiscard]] DWORD Id() const;

 private:
  nhupdate::UniqueKernelHandle process_;
};

// What this process has been started for; nothing when it is nobody's child.
[[nodiscard]] std::optional<int> DoTask(int count, wchar_t** arguments);

}  // namespace nhupdate_test
