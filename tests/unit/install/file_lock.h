#pragma once

// Holds a file open so that nobody else can read, write or delete it, until Release.

#include <gtest/gtest.h>

#include <string>

#include "base/unique_handle.h"

namespace nhupdate_test {

class FileLock {
 public:
  explicit FileLock(const std::wstring& file)
      : handle_(::CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr)) {
    EXPECT_TRUE(handle_.IsValid()) << "Can't hold " << testing::PrintToString(file);
  }

  void Release() { handle_.Reset(); }

 private:
  nhupdate::UniqueFile handle_;
};

}  // namespace nhupdate_test
