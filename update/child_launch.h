#pragma once

// The one way in which the program starts its children.

#include <optional>
#include <string>
#include <variant>

#include "base/format.h"
#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate {

// A child program, its parameters and what is logged of its launch. All launches that there are
// stand in update/launch_catalog.h.
struct ChildLaunch {
  const wchar_t* executable;  // the file's name with a backslash before it
  // With a placeholder for the id of this process where the child is to end with its parent.
  std::variant<FormatString<>, FormatString<DWORD>> parameters;
  FormatString<std::wstring> not_found_message;
  FormatString<DWORD> failure_message;
  FormatString<> success_message;
  // Only launches that wait until the child ends have one.
  std::optional<FormatString<DWORD>> exit_message;
};

enum class LaunchState { kMissing, kFailed, kStarted };

struct LaunchOutcome {
  LaunchState state = LaunchState::kMissing;
  // Of a child that was waited for; nothing when it can't be read.
  std::optional<DWORD> exit_code;
  // Of a child that was waited for; closed with this outcome.
  UniqueKernelHandle process;
};

}  // namespace nhupdate
