#pragma once

// How the stand-ins for other programs were started.

#include <string>
#include <vector>

#include "base/windows.h"

namespace nhupdate_test {

inline constexpr wchar_t kChildJournalVariable[] = L"NHUPDATE_CHILD_JOURNAL";

struct ChildStart {
  DWORD process_id = 0;
  std::wstring path;
  std::wstring working_folder;
  std::wstring show_state;  // a number, or "-"
  DWORD parent_id = 0;
  std::wstring parent_name;  // empty when the parent had ended already
  std::wstring command_line;
};

// All starts so far, in order.
[[nodiscard]] std::vector<ChildStart> ReadChildJournal(const std::wstring& path);

}  // namespace nhupdate_test
