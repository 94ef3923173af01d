#pragma once

// Holds the program and everything that it starts, and tells when all of it has ended.

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/end_to_end/support/child_journal.h"

namespace nhupdate_test {

// A process of the program, the one that was started itself or a later stage.
struct ManagerProcess {
  DWORD id = 0;
  std::wstring path;
  DWORD exit_code = 0;
};

class CProcessJob {
 public:
  CProcessJob();
  CProcessJob(const CProcessJob&) = delete;
  CProcessJob& operator=(const CProcessJob&) = delete;

  // Takes a process before it does anything.
  void Add(HANDLE process);

  // Calls `meanwhile`, when there is one, again and again until all processes have ended. Returns
  // false, and ends what is left, when the time is over first.
  [[nodiscard]] bool WaitForAll(DWORD time_limit_ms, const std::function<void()>& meanwhile);

  // The program's own processes, in the order in which they began. Among them is, with no path,
  // each that was gone before anybody could look at it and that is not one of the given stand-ins:
  // it might have been one of the program's.
  [[nodiscard]] std::vector<ManagerProcess> Managers(
      const std::vector<ChildStart>& stand_ins) const;

  // The ids of all processes, in the order in which they ended.
  [[nodiscard]] const std::vector<DWORD>& Ends() const { return ends_; }

 private:
  // Returns whether the message says that no process is left.
  bool TakeMessage(DWORD message, DWORD process_id);
  void Note(DWORD process_id);
  // Returns whether the paths of all processes are known.
  bool LearnPaths();

  nhupdate::UniqueKernelHandle job_;
  nhupdate::UniqueKernelHandle port_;
  std::vector<std::pair<ManagerProcess, nhupdate::UniqueKernelHandle>> processes_;
  std::vector<DWORD> ends_;
};

}  // namespace nhupdate_test
