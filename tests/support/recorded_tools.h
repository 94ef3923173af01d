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
  RecordedTools()
      : execute_([this](HWND, const wchar_t*, const wchar_t* file, const wchar_t* parameters,
                        const wchar_t*, int) {
          started_.push_back(std::wstring(file) + L" " + parameters);
          return reinterpret_cast<HINSTANCE>(INT_PTR{kRecordedToolResult});
        }) {}
  RecordedTools(const RecordedTools&) = delete;
  RecordedTools& operator=(const RecordedTools&) = delete;

  // Each as L"file parameters".
  [[nodiscard]] const std::vector<std::wstring>& Started() const { return started_; }

 private:
  std::vector<std::wstring> started_;
  INTERPOSER(ShellExecuteW) execute_;
};

}  // namespace nhupdate_test
