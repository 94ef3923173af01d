#pragma once

// The current folder of the process, which is looked at or made another one.

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "base/windows.h"

namespace nhupdate_test {

[[nodiscard]] inline std::wstring PathOfCurrentFolder() {
  std::array<wchar_t, 1024> path = {};
  ::GetCurrentDirectoryW(static_cast<DWORD>(path.size()), path.data());
  return path.data();
}

[[nodiscard]] inline std::wstring PathOfSystemFolder() {
  std::array<wchar_t, 1024> path = {};
  ::GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size()));
  return path.data();
}

// Another one for as long as the object lives.
class CurrentFolder {
 public:
  explicit CurrentFolder(const std::wstring& folder) {
    EXPECT_TRUE(::SetCurrentDirectoryW(folder.c_str()));
  }
  ~CurrentFolder() { ::SetCurrentDirectoryW(former_.c_str()); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  std::wstring former_ = PathOfCurrentFolder();
};

}  // namespace nhupdate_test
