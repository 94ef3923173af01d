#pragma once

// Holds a file, or a folder, open until Release or the end of the object's life; a test failure
// when it can't. Nobody else can read, write or delete it meanwhile, unless `sharing` allows it.

#include <gtest/gtest.h>

#include <string>

#include "base/unique_handle.h"
#include "base/windows.h"

namespace nhupdate_test {

class HeldFile {
 public:
  // `sharing` is what others may still do (FILE_SHARE_READ and so on), `access` what the object may
  // do.
  explicit HeldFile(const std::wstring& path, DWORD sharing = 0, DWORD access = GENERIC_READ)
      : handle_(::CreateFileW(path.c_str(), access, sharing, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS, nullptr)) {
    EXPECT_TRUE(handle_.IsValid()) << "Can't hold " << testing::PrintToString(path);
  }

  void Release() { handle_.Reset(); }

 private:
  nhupdate::UniqueFile handle_;
};

}  // namespace nhupdate_test
