#pragma once

// Runs log_writer.exe.

#include <string>

#include "base/unique_handle.h"
#include "tests/log_library/test_log.h"
#include "tests/support/child_process.h"

namespace nhupdate_test {

// Opens for all writers of a test at the same moment.
class WriterGate {
 public:
  WriterGate();

  void Open() const;
  [[nodiscard]] const std::wstring& Name() const { return name_; }

 private:
  std::wstring name_;
  nhupdate::UniqueKernelHandle event_;
};

class WriterProcess {
 public:
  // Starts the process, which waits at the gate.
  WriterProcess(const LogPlace& place, const WriterGate& gate, const std::wstring& name, int count);
  // Ends the process if it is still running.
  ~WriterProcess();
  WriterProcess(const WriterProcess&) = delete;
  WriterProcess& operator=(const WriterProcess&) = delete;

  // Waits for the end and returns the exit code; fails the test after two and a half minutes.
  int Wait();

  // Ends the process wherever it is.
  void Kill();

 private:
  ChildProcess process_;
};

}  // namespace nhupdate_test
