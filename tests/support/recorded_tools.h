#pragma once

// Takes the place of the tools that the program starts without waiting for them: each is written
// down and counts as started.

#include "tests/support/windows_basics.h"

#include <shellapi.h>  // needs <windows.h> first

namespace nhupdate_test {

// What ShellExecuteW returns; above 32 is success.
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
