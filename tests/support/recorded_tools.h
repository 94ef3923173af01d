#pragma once

// Takes the place of the tools that are started without a process to wait for: each is written down
// and counts as started.

#include <string>
#include <vector>

#include "base/windows.h"
#include "tests/support/interposer.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate_test {

// What their start returns; above 32 is success.
inline constexpr int kRecordedToolResult = 42;

class RecordedTools {
 public:
  // Each as L"file parameters".
  [[nodiscard]] const std::vector<std::wstring>& Started() const { return started_; }

 private:
  std::vector<std::wstring> started_;
  INTERPOSER(ShellExecuteW) execute_{
      [this](HWND, const wchar_t*, const wchar_t* file, const wchar_t* parameters, auto...) {
        started_.push_back(std::wstring(file) + L" " + parameters);
        return reinterpret_cast<HINSTANCE>(INT_PTR{kRecordedToolResult});
      }};
};

}  // namespace nhupdate_test
