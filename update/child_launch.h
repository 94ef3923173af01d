#pragma once

// The one way in which the program starts its children.

#include <optional>
#include <string>

#include "base/format.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "log/log.h"

namespace nhupdate {

// What follows the program's name on its command line.
class CLaunchParameters {
 public:
  // As they stand.
  [[nodiscard]] static consteval CLaunchParameters Plain(FormatString<> text) { return {text}; }

  // With the id of this process in place of "%d", so that the child ends with its parent.
  [[nodiscard]] static consteval CLaunchParameters WithProcessId(FormatString<DWORD> text) {
    return {text};
  }

  [[nodiscard]] std::wstring Text() const;

 private:
  consteval CLaunchParameters(FormatString<> text) : plain_(text) {}
  consteval CLaunchParameters(FormatString<DWORD> text) : with_process_id_(text) {}

  // One of the two.
  std::optional<FormatString<>> plain_;
  std::optional<FormatString<DWORD>> with_process_id_;
};

// A child program, its parameters and what is logged of its launch. All launches that there are
// stand in update/launch_catalog.h.
struct ChildLaunch {
  const wchar_t* executable;  // the file's name with a backslash before it
  CLaunchParameters parameters;
  FormatString<std::wstring> not_found_message;
  FormatString<DWORD> failure_message;
  FormatString<> success_message;
  bool waits;  // until the child ends, however long that takes
  // For a launch that waits.
  FormatString<DWORD> exit_message = L"Updater exit = %d";
};

enum class LaunchState {
  kMissing,      // there is no such program
  kNotLaunched,  // Windows refused
  kLaunched,
};

struct LaunchOutcome {
  LaunchState state = LaunchState::kMissing;
  // Of a child that was waited for; nothing when it can't be read.
  std::optional<DWORD> exit_code;
  // Of a child that was waited for; closed with this outcome.
  UniqueKernelHandle process;

  // True when the child was launched and, as far as is known, didn't end with a failure: an exit
  // code that can't be read counts as 0. Not for a check, whose codes mean something else.
  [[nodiscard]] bool IsSuccess() const {
    return state == LaunchState::kLaunched && exit_code.value_or(0) == 0;
  }
};

// Starts a child program in its folder without a window and, where the launch says so, waits until
// it ends. Logs every step but does not judge the exit code.
[[nodiscard]] LaunchOutcome Launch(const ChildLaunch& launch, const std::wstring& folder,
                                   const CLog& log);

}  // namespace nhupdate
