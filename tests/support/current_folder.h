#pragma once

// Makes a folder the current one for as long as the object lives.

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "base/windows.h"

namespace nhupdate_test {

class CurrentFolder {
 public:
  explicit CurrentFolder(const std::wstring& folder) {
    ::GetCurrentDirectoryW(static_cast<DWORD>(former_.size()), former_.data());
    EXPECT_TRUE(::SetCurrentDirectoryW(folder.c_str()));
  }
  ~CurrentFolder() { ::SetCurrentDirectoryW(former_.data()); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  std::array<wchar_t, 1024> former_ = {};
};

}  // namespace nhupdate_test
