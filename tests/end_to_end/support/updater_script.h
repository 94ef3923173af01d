#pragma once

// What the stand-in for Updater.exe, and for CSUpdateManager.exe, does; see there.

#include <string>

namespace nhupdate_test {

struct UpdaterTask {
  int exit_code = 0;
  int delay_ms = 0;
  std::wstring stage = {};
  std::wstring new_updater = {};
};

// Puts an empty script into the folder: no task is known.
void PutScript(const std::wstring& folder);

// Tells the stand-in in the folder what to do for a task.
void WriteTask(const std::wstring& folder, const std::wstring& task, const UpdaterTask& what);

}  // namespace nhupdate_test
